#include "export/VCard.h"

#include <QUuid>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// RFC 6350, section 3.4.
QString Escaped(const QString& text) {
    QString result;
    result.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r') {
            if (i + 1 >= text.size() || text[i + 1] != u'\n')
                result += u"\\n";
        } else if (c == u'\n') {
            result += u"\\n";
        } else {
            if (c == u'\\' || c == u',' || c == u';')
                result += u'\\';
            result += c;
        }
    }
    return result;
}

// A parameter's value in quotes (RFC 6868 for what quotes cannot hold).
QString Quoted(const QString& text) {
    QString result = text;
    result.replace(u'^', u"^^"_s)
        .replace(u"\r\n"_s, u"\n"_s)
        .replace(u'\r', u'\n')
        .replace(u'\n', u"^n"_s)
        .replace(u'"', u"^'"_s);
    return u'"' + result + u'"';
}

// Lines of at most 75 octets, never broken within a character (section 3.2).
void AppendFolded(QByteArray& to, const QString& line) {
    const QByteArray utf8 = line.toUtf8();
    qsizetype room = 75;
    qsizetype from = 0;
    while (utf8.size() - from > room) {
        qsizetype end = from + room;
        while ((static_cast<unsigned char>(utf8[end]) & 0xc0) == 0x80)
            --end;
        to.append(utf8.constData() + from, end - from);
        to += "\r\n ";
        from = end;
        room = 74; // the blank in front
    }
    to.append(utf8.constData() + from, utf8.size() - from);
    to += "\r\n";
}

QStringList Parts(const QString& text) {
    QStringList parts;
    for (const QString& part : text.split(u';'))
        if (const QString trimmed = part.trimmed(); !trimmed.isEmpty())
            parts.append(trimmed);
    return parts;
}

QString UidOf(const Lead& lead) {
    static const QUuid space = QUuid::createUuidV5(QUuid(), u"brindle:lead"_s);
    const QString key =
        !lead.DetailsLink.isEmpty() ? lead.DetailsLink : lead.Name + u'\n' + lead.Phone + u'\n' + lead.FullAddress;
    return u"urn:uuid:"_s + QUuid::createUuidV5(space, key).toString(QUuid::WithoutBraces);
}

} // namespace

QString VCardLines::Held(const QString& text) {
    const auto cannotHold = [](QChar c) {
        return (c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c.unicode() == 0x7f;
    };
    if (std::none_of(text.begin(), text.end(), cannotHold))
        return text;
    ++losses_.Characters;
    QString held = text;
    held.removeIf(cannotHold);
    return held;
}

void VCardLines::AppendLead(QByteArray& to, const Lead& original) {
    Lead lead;
    for (int column = 0; column < FieldCount; ++column)
        lead.At(column) = Held(original.At(column));
    const auto line = [&to](const QString& text) { AppendFolded(to, text); };
    const auto property = [&](QStringView name, const QString& value) {
        if (!value.isEmpty())
            line(name + u':' + Escaped(value));
    };
    line(u"BEGIN:VCARD"_s);
    line(u"VERSION:4.0"_s);
    line(u"KIND:org"_s);
    line(u"UID:"_s + UidOf(original));
    // A card without a name is none.
    QString shown = lead.Name;
    for (const QString& other : {lead.Phone, lead.FullAddress, u"?"_s})
        if (shown.trimmed().isEmpty())
            shown = other;
    property(u"FN", shown);
    property(u"ORG", lead.Name);
    const bool inParts = !lead.Street.isEmpty() || !lead.City.isEmpty() || !lead.PostalCode.isEmpty();
    if (inParts || !lead.FullAddress.isEmpty() || !lead.State.isEmpty() || !lead.Country.isEmpty()) {
        const QString label = lead.FullAddress.isEmpty() ? QString() : u";LABEL="_s + Quoted(lead.FullAddress);
        // Not every address book shows the label, so an address that was not taken apart stands as the street too.
        const QString undivided = inParts ? QString() : u";X-UNDIVIDED=1"_s;
        line(u"ADR"_s + undivided + label + u":;;" + Escaped(inParts ? lead.Street : lead.FullAddress) + u';' +
             Escaped(lead.City) + u';' + Escaped(lead.State) + u';' + Escaped(lead.PostalCode) + u';' +
             Escaped(lead.Country));
    }
    for (const QString& phone : Parts(lead.Phone))
        property(u"TEL;VALUE=text;TYPE=\"voice,work\"", phone);
    for (const QString& fax : Parts(lead.Fax))
        property(u"TEL;VALUE=text;TYPE=\"fax,work\"", fax);
    for (const QString& email : Parts(lead.Email))
        property(u"EMAIL", email);
    const auto address = [&](QStringView name, QString value) {
        if (!value.isEmpty())
            line(name + u':' + value.remove(u'\r').remove(u'\n'));
    };
    address(u"URL", lead.Website);
    property(u"CATEGORIES", lead.Category);
    address(u"SOURCE", lead.DetailsLink);
    property(u"X-MAP-LINK", lead.MapLink);
    line(u"END:VCARD"_s);
}

} // namespace Brindle
