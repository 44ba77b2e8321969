#include "discovery/Annotations.h"
#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsWordMark(QChar c) {
    return c.isLetterOrNumber() || c == u'.' || c == u'_' || c == u'-' || c == u'+';
}

bool IsMonth(QStringView word) {
    static const QSet<QStringView> months = [] {
        QSet<QStringView> set;
        constexpr QStringView names =
            u"january february march april june july august september october november december jan feb mar apr jun "
            u"jul "
            u"aug sep sept oct nov dec januar februar märz mai juni juli oktober dezember dez janvier février mars "
            u"avril "
            u"juin juillet août septembre octobre novembre décembre enero febrero marzo abril mayo junio julio agosto "
            u"septiembre octubre noviembre diciembre gennaio febbraio aprile maggio giugno luglio settembre ottobre "
            u"dicembre janeiro fevereiro março maio junho julho setembro outubro novembro dezembro januari februari "
            u"maart "
            u"mei augustus stycznia lutego marca kwietnia maja czerwca lipca sierpnia września października listopada "
            u"grudnia января февраля марта апреля мая июня июля августа сентября октября ноября декабря";
        for (const QStringView name : names.split(u' '))
            set.insert(name);
        return set;
    }();
    return word.size() <= 12 && months.contains(BareView(word).View());
}

} // namespace

QString DigitsOfPhone(QStringView text) {
    QString digits;
    for (const QChar c : text) {
        if (c.isDigit())
            digits += QChar(u'0' + c.digitValue());
        else if (!QStringView(u" ()+-./\u00A0\u2011\u2013").contains(c))
            return {};
    }
    return digits.size() >= 7 && digits.size() <= 15 ? digits : QString();
}

QStringList MailsIn(QStringView text) {
    QString plain = text.toString();
    if (!plain.contains(u'@'))
        for (const QStringView at : {u" [at] ", u"[at]", u" (at) ", u"(at)"})
            plain.replace(at.toString(), u"@"_s, Qt::CaseInsensitive);
    if (!plain.contains(u'@'))
        return {};
    for (const QStringView dot : {u" [dot] ", u"[dot]", u" (dot) ", u"(dot)", u" [punkt] ", u"[punkt]"})
        plain.replace(dot.toString(), u"."_s, Qt::CaseInsensitive);
    QStringList mails;
    for (qsizetype at = plain.indexOf(u'@'); at >= 0; at = plain.indexOf(u'@', at + 1)) {
        qsizetype begin = at;
        while (begin > 0 && at - begin < 64 && IsWordMark(plain[begin - 1]))
            --begin;
        qsizetype end = at + 1;
        while (end < plain.size() && end - at < 254 &&
               (plain[end].isLetterOrNumber() || plain[end] == u'-' || plain[end] == u'.'))
            ++end;
        while (end > at + 1 && (plain[end - 1] == u'.' || plain[end - 1] == u'-'))
            --end;
        while (begin < at && (plain[begin] == u'.' || plain[begin] == u'-'))
            ++begin;
        const QString host = plain.sliced(at + 1, end - at - 1);
        const qsizetype dot = host.lastIndexOf(u'.');
        const QStringView top = QStringView(host).sliced(dot + 1);
        const bool picture = top == u"png" || top == u"jpg" || top == u"gif" || top == u"svg" || top == u"webp";
        if (begin < at && dot > 0 && top.size() >= 2 && !picture &&
            std::all_of(top.begin(), top.end(), [](QChar c) { return c.isLetter() || c == u'-'; })) {
            const QString mail = plain.sliced(begin, end - begin);
            if (!mails.contains(mail))
                mails << mail;
        }
    }
    return mails;
}

QString DecodedMail(QStringView hexadecimal) {
    const QByteArray bytes = QByteArray::fromHex(hexadecimal.toLatin1());
    if (bytes.size() < 4 || hexadecimal.size() > 600)
        return {};
    QByteArray mail;
    for (qsizetype i = 1; i < bytes.size(); ++i)
        mail += static_cast<char>(bytes[i] ^ bytes[0]);
    const QStringList mails = MailsIn(QString::fromUtf8(mail));
    return mails.size() == 1 ? mails.first() : QString();
}

bool HasDate(QStringView text) {
    // 24.12.2023, 12/24/23, 2023-12-24, 2023年12月24日, 24 December 2023
    const auto number = [text](qsizetype& at) {
        int value = 0;
        int digits = 0;
        while (at < text.size() && Ascii::IsDigit(text[at]) && digits < 5) {
            value = value * 10 + text[at++].digitValue();
            ++digits;
        }
        return std::pair(value, digits);
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] < u'0' || text[i] > u'9')
            continue;
        qsizetype at = i;
        const auto [first, firstDigits] = number(at);
        const bool begins = i == 0 || (!text[i - 1].isLetterOrNumber() && text[i - 1] != u'+' && text[i - 1] != u'/');
        if (begins && firstDigits <= 4 && at + 3 < text.size()) {
            const QChar mark = text[at];
            if (mark == u'.' || mark == u'/' || mark == u'-' || mark == u'\u5E74') {
                qsizetype behind = at + 1;
                const auto [second, secondDigits] = number(behind);
                const bool again = behind < text.size() && (text[behind] == mark || text[behind] == u'\u6708');
                if (secondDigits >= 1 && secondDigits <= 2 && again) {
                    qsizetype last = behind + 1;
                    const auto [third, thirdDigits] = number(last);
                    const bool ends = last >= text.size() || (!text[last].isDigit() && text[last] != mark);
                    const bool yearFirst =
                        firstDigits == 4 && first >= 1900 && first < 2100 && second <= 12 && third <= 31;
                    const bool yearLast = firstDigits <= 2 && first <= 31 && second <= 31 &&
                                          ((thirdDigits == 4 && third >= 1900 && third < 2100) || thirdDigits == 2);
                    if (ends && thirdDigits >= 1 && (yearFirst || yearLast))
                        return true;
                }
            }
            // A month beside it, by its name.
            qsizetype word = at;
            while (word < text.size() && (text[word] == u' ' || text[word] == u'.' || text[word] == u','))
                ++word;
            qsizetype end = word;
            while (end < text.size() && text[end].isLetter())
                ++end;
            if (firstDigits <= 2 && first <= 31 && end - word >= 3 && IsMonth(text.sliced(word, end - word)))
                return true;
            qsizetype before = i;
            while (before > 0 && (text[before - 1] == u' ' || text[before - 1] == u'.'))
                --before;
            qsizetype begin = before;
            while (begin > 0 && text[begin - 1].isLetter())
                --begin;
            if (first <= 2100 && before - begin >= 3 && IsMonth(text.sliced(begin, before - begin)))
                return true;
        }
        i = std::max(i, at - 1);
    }
    return false;
}

bool HasPrice(QStringView text) {
    constexpr QStringView signs = u"$\u20AC\u00A3\u00A5\u20B9\u20BD\u20A9\u20BA\u20AB\u0E3F\u20B4\u20AA";
    static constexpr auto names = std::to_array<QStringView>(
        {u"EUR", u"USD", u"GBP", u"CHF", u"PLN", u"z\u0142", u"K\u010D", u"Ft",  u"kr",  u"SEK", u"руб",
         u"р.",  u"грн", u"円",  u"元",  u"원",  u"Rs",      u"TL",      u"AED", u"lei", u"CAD", u"AUD"});
    static constexpr auto firstOfName = [] {
        std::array<bool, 0x80> first{};
        for (const QStringView name : names)
            if (name.front().unicode() < first.size())
                first[name.front().unicode()] = true;
        return first;
    }();
    const auto mayBeginName = [](QChar c) { return c.unicode() >= firstOfName.size() || firstOfName[c.unicode()]; };
    const auto digitBeside = [text](qsizetype begin, qsizetype end) {
        const auto isGap = [](QChar c) { return c == u' ' || c == u'\u00A0' || c == u'.' || c == u'-' || c == u','; };
        qsizetype before = begin - 1;
        for (int i = 0; i < 2 && before >= 0 && isGap(text[before]); ++i)
            --before;
        qsizetype behind = end;
        for (int i = 0; i < 2 && behind < text.size() && isGap(text[behind]); ++i)
            ++behind;
        return (before >= 0 && text[before].isDigit()) || (behind < text.size() && text[behind].isDigit());
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c != u'$' && (c < 0xA0 || !IsAmong(text[i], signs)))
            continue;
        // "$$" tells how dear a place is.
        const bool range = (i > 0 && text[i - 1] == text[i]) || (i + 1 < text.size() && text[i + 1] == text[i]);
        if (!range && digitBeside(i, i + 1))
            return true;
    }
    // A name of money stands beside its amount.
    bool beside = false;
    for (qsizetype i = 1; i < text.size() && !beside; ++i) {
        const QChar before = text[i - 1];
        const bool gap = i >= 2 && (before == u' ' || before == u'\u00A0' || before == u'.');
        const QChar other = gap ? text[i - 2] : before;
        beside = (text[i].isLetter() && other.isDigit()) || (text[i].isDigit() && other.isLetter());
    }
    if (!beside)
        return false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!mayBeginName(text[at]) || (at > 0 && text[at - 1].isLetter()))
            continue;
        for (const QStringView name : names) {
            const qsizetype end = at + name.size();
            if (text[at] == name.front() && text.sliced(at).startsWith(name) &&
                (end == text.size() || !text[end].isLetter()) && digitBeside(at, end))
                return true;
        }
    }
    return false;
}

} // namespace Brindle
