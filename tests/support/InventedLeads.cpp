#include "InventedLeads.h"

#include <array>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

// A well mixed number of 64 bits.
quint64 Mixed(quint64 x) {
    x += 0x9e3779b97f4a7c15U;
    x = (x ^ (x >> 30U)) * 0xbf58476d1ce4e5b9U;
    x = (x ^ (x >> 27U)) * 0x94d049bb133111ebU;
    return x ^ (x >> 31U);
}

QString Surname(quint64 random) {
    static const std::array<QStringView, 32> syllables{u"bar", u"do",  u"fen", u"ga",  u"hol", u"in",   u"jan", u"ker",
                                                       u"lo",  u"mar", u"nel", u"os",  u"pe",  u"quin", u"ras", u"sel",
                                                       u"ti",  u"ul",  u"vor", u"wen", u"xan", u"ye",   u"zor", u"ad",
                                                       u"bel", u"cor", u"dun", u"el",  u"fi",  u"gro",  u"har", u"is"};
    QString name;
    for (int i = 0; i < 3; ++i, random >>= 5U)
        name += syllables.at(random & 31U);
    name[0] = name[0].toUpper();
    return name;
}

template <size_t N>
QString OneOf(const std::array<QStringView, N>& list, quint64 random) {
    return list.at(random % N).toString();
}

} // namespace

Lead InventedLead(qint64 number) {
    static const std::array<QStringView, 12> trades{u"Plumbers",
                                                    u"Restaurants",
                                                    u"Dentists",
                                                    u"Auto Repair & Service",
                                                    u"Hotels & Motels",
                                                    u"Lawyers",
                                                    u"Roofing Contractors",
                                                    u"Florists Retail",
                                                    u"Bakeries",
                                                    u"Electricians",
                                                    u"Veterinarians",
                                                    u"Real Estate Agents"};
    static const std::array<QStringView, 8> kinds{u"& Sons",     u"Group", u"Services", u"Ltd",
                                                  u"Associates", u"Bros",  u"Partners", u"Co"};
    static const std::array<QStringView, 4> roads{u"St", u"Ave", u"Rd", u"Blvd"};
    static const std::array<QStringView, 3> states{u"BC", u"ON", u"QC"};
    const quint64 a = Mixed(static_cast<quint64>(number));
    const quint64 b = Mixed(a);
    const QString surname = Surname(a);
    const QString town = Surname(Mixed(b % 3000)); // 3,000 towns
    Lead lead;
    lead.Category = OneOf(trades, a >> 20U);
    lead.Name = surname + u' ' + Surname(b) + u' ' + OneOf(kinds, a >> 24U);
    lead.Street =
        QString::number(1 + (a >> 30U) % 9999) + u' ' + Surname(Mixed(b % 20'000)) + u' ' + OneOf(roads, a >> 45U);
    lead.City = town;
    lead.State = OneOf(states, b % 3000);
    lead.PostalCode = u"V%1A %2B%3"_s.arg((b >> 10U) % 10).arg((b >> 14U) % 10).arg((b >> 18U) % 10);
    lead.Country = u"Canada"_s;
    lead.FullAddress = lead.Street + u", " + lead.City + u", " + lead.State + u' ' + lead.PostalCode;
    lead.Phone = u"(%1) %2-%3"_s.arg(200 + (a >> 33U) % 700)
                     .arg(200 + (b >> 22U) % 700)
                     .arg((b >> 32U) % 10'000, 4, 10, QChar(u'0'));
    if (a % 3 == 0)
        lead.Fax = u"(%1) %2-%3"_s.arg(200 + (a >> 33U) % 700)
                       .arg(200 + (b >> 42U) % 700)
                       .arg((b >> 50U) % 10'000, 4, 10, QChar(u'0'));
    const QString host = surname.toLower() + QString::number((b >> 12U) % 1000) + u".example";
    if (a % 4 != 0)
        lead.Website = u"http://www."_s + host + u'/';
    if (a % 5 < 2)
        lead.Email = u"info@"_s + host;
    lead.MapLink = u"http://maps.directory.test/maps?q="_s + QString(lead.FullAddress).replace(u' ', u'+') + u",Canada";
    lead.DetailsLink = u"http://www.directory.test/bus/"_s + lead.State + u'/' + lead.City + u'/' +
                       QString(lead.Name).replace(u' ', u'-') + u'/' + QString::number(100'000 + number) + u".html";
    return lead;
}

} // namespace Brindle::Test
