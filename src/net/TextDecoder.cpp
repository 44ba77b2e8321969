#include "net/TextDecoder.h"

#include "net/CharacterSets.h"
#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <QByteArrayList>
#include <QIODevice>
#include <QStringDecoder>

#include <array>
#include <cstring>
#include <initializer_list>
#include <optional>

namespace Brindle {

namespace {

QString WithoutMark(QString text) {
    if (text.startsWith(u'\uFEFF'))
        text.remove(0, 1);
    return text;
}

// The bytes of a character that `bytes` has at `at`, and whether they are all of it.
struct Utf8Character {
    qsizetype Length = 1;
    bool Whole = false;
};

// Which bytes can follow which is The Unicode Standard, table 3-7.
Utf8Character Utf8CharacterAt(const QByteArray& bytes, qsizetype at) {
    const auto byteAt = [&bytes](qsizetype i) { return static_cast<unsigned char>(i < bytes.size() ? bytes[i] : 0); };
    const unsigned char lead = byteAt(at);
    if (lead < 0x80)
        return {1, true};
    const qsizetype length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4)
        return {};
    const unsigned char least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byteAt(at + 1) < least || byteAt(at + 1) > most)
        return {};
    qsizetype i = 2;
    while (i < length && (byteAt(at + i) & 0xC0) == 0x80)
        ++i;
    return {i, i == length};
}

// One replacement character stands for each longest beginning of a character, as in browsers, be it at the end of the
// text or inside; the converter would write one for every byte.
QString DecodeUtf8(const QByteArray& bytes) {
    using Flag = QStringConverter::Flag;
    QStringDecoder decode(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    const QString text = decode(bytes);
    if (!decode.hasError())
        return WithoutMark(text);
    QByteArray mended;
    mended.reserve(bytes.size() + bytes.size() / 2);
    for (qsizetype at = 0; at < bytes.size();) {
        const Utf8Character character = Utf8CharacterAt(bytes, at);
        mended.append(character.Whole ? QByteArrayView(bytes).sliced(at, character.Length)
                                      : QByteArrayView("\xEF\xBF\xBD"));
        at += character.Length;
    }
    return WithoutMark(QStringDecoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom)(mended));
}

QString Decode(QStringConverter::Encoding encoding, const QByteArray& bytes) {
    if (encoding == QStringConverter::Utf8)
        return DecodeUtf8(bytes);
    using Flag = QStringConverter::Flag;
    return WithoutMark(QStringDecoder(encoding, Flag::Stateless | Flag::ConvertInitialBom)(bytes));
}

// Labels whose meaning in the Encoding standard is wider than their name says, or whose name no converter has.
QByteArray UsualName(const QByteArray& label) {
    struct Row {
        const char* Name;
        std::initializer_list<const char*> Labels;
    };
    static const std::array<Row, 12> names{{
        {"windows-1252",
         {"cp1252", "x-cp1252", "iso-8859-1", "iso8859-1", "iso_8859-1", "iso88591", "iso_8859-1:1987", "csisolatin1",
          "latin1", "l1", "us-ascii", "ascii", "ansi_x3.4-1968", "cp819", "ibm819", "iso-ir-100"}},
        {"windows-1254",
         {"iso-8859-9", "iso8859-9", "iso_8859-9", "iso88599", "iso_8859-9:1989", "csisolatin5", "latin5", "l5",
          "iso-ir-148"}},
        {"windows-874", {"iso-8859-11", "iso8859-11", "iso885911", "tis-620", "dos-874"}},
        {"gbk", {"gb2312", "gb_2312", "gb_2312-80", "csgb2312", "csiso58gb231280", "chinese", "iso-ir-58", "x-gbk"}},
        {"windows-949",
         {"euc-kr", "cseuckr", "korean", "ks_c_5601-1987", "ks_c_5601-1989", "ksc5601", "ksc_5601", "csksc56011987",
          "iso-ir-149"}},
        {"shift_jis", {"x-sjis", "shift-jis"}},
        {"big5", {"cn-big5", "x-x-big5"}},
        {"koi8-r", {"koi", "koi8", "koi8_r"}},
        {"koi8-u", {"koi8-ru"}},
        {"iso-8859-6", {"csiso88596e", "csiso88596i", "iso-8859-6-e", "iso-8859-6-i"}},
        {"iso-8859-8", {"csiso88598e", "csiso88598i", "iso-8859-8-e", "iso-8859-8-i", "visual", "logical"}},
        {"x-mac-cyrillic", {"x-mac-ukrainian"}},
    }};
    for (const Row& row : names)
        for (const char* const other : row.Labels)
            if (label == other)
                return row.Name;
    return label;
}

std::optional<QString> DecodeByLabel(const QByteArray& label, const QByteArray& bytes) {
    if (label.isEmpty())
        return std::nullopt;
    if (label == "utf-8" || label == "utf8" || label == "unicode-1-1-utf-8")
        return Decode(QStringConverter::Utf8, bytes);
    if (label == "utf-16" || label == "utf-16le" || label == "unicode")
        return Decode(bytes.startsWith("\xFE\xFF") ? QStringConverter::Utf16BE : QStringConverter::Utf16LE, bytes);
    if (label == "utf-16be")
        return Decode(QStringConverter::Utf16BE, bytes);
    const QByteArray name = UsualName(label);
    if (name == "windows-1252")
        return FromWindows1252(bytes);
    std::optional<QString> text = DecodeCharacterSet(name, bytes);
    if (text)
        text = WithoutMark(*std::move(text));
    return text;
}

std::optional<QString> DecodeByMark(const QByteArray& bytes) {
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return Decode(QStringConverter::Utf8, bytes);
    if (bytes.startsWith("\xFF\xFE"))
        return Decode(QStringConverter::Utf16LE, bytes);
    if (bytes.startsWith("\xFE\xFF"))
        return Decode(QStringConverter::Utf16BE, bytes);
    return std::nullopt;
}

struct Attribute {
    QByteArray Name; // empty: the tag's end
    QByteArray Value;
};

// The attribute of a tag at `at`, lower-cased; nothing when the text ends inside it.
std::optional<Attribute> NextAttribute(const QByteArray& text, qsizetype& at) {
    const auto skip = [&](auto matches) {
        const qsizetype begin = at;
        while (at < text.size() && matches(text[at]))
            ++at;
        return text.sliced(begin, at - begin).toLower();
    };
    const auto ended = [&] { return at >= text.size(); };
    Attribute attribute;
    skip([](char c) { return Ascii::IsBlank(c) || c == '/'; });
    if (ended())
        return std::nullopt;
    if (text[at] == '>')
        return attribute;
    const char first = text[at++]; // even a "="
    attribute.Name = QByteArray(1, first).toLower() +
                     skip([](char c) { return !Ascii::IsBlank(c) && c != '/' && c != '>' && c != '='; });
    skip(Ascii::IsBlank<char>);
    if (ended())
        return std::nullopt;
    if (text[at] != '=')
        return attribute;
    ++at;
    skip(Ascii::IsBlank<char>);
    if (ended())
        return std::nullopt;
    if (const char quote = text[at]; quote == '"' || quote == '\'') {
        ++at;
        attribute.Value = skip([quote](char c) { return c != quote; });
        if (ended())
            return std::nullopt;
        ++at;
    } else {
        attribute.Value = skip([](char c) { return !Ascii::IsBlank(c) && c != '>'; });
        if (ended())
            return std::nullopt;
    }
    return attribute;
}

bool IsKnown(const QByteArray& label) {
    return DecodeByLabel(label, {}).has_value();
}

// The label that the attributes of a <meta> give, empty when there is none of use; nothing when the text ends inside.
std::optional<QByteArray> LabelOfMeta(const QByteArray& text, qsizetype& at) {
    QByteArrayList seen;
    std::optional<QByteArray> label;
    bool isContentType = false;
    bool hasToBe = false;
    for (;;) {
        const std::optional<Attribute> attribute = NextAttribute(text, at);
        if (!attribute)
            return std::nullopt;
        if (attribute->Name.isEmpty())
            break;
        if (seen.contains(attribute->Name))
            continue;
        seen.append(attribute->Name);
        if (attribute->Name == "charset") {
            label = attribute->Value.trimmed();
            hasToBe = false;
        } else if (attribute->Name == "http-equiv") {
            isContentType = attribute->Value == "content-type";
        } else if (attribute->Name == "content" && !label) {
            const QByteArray charset = CharsetOf(attribute->Value);
            if (IsKnown(charset)) {
                label = charset;
                hasToBe = true;
            }
        }
    }
    return label && IsKnown(*label) && (isContentType || !hasToBe) ? *label : QByteArray();
}

bool IsMetaTag(QByteArrayView lowered) {
    return lowered.startsWith("<meta") && lowered.size() > 5 && (Ascii::IsBlank(lowered[5]) || lowered[5] == '/');
}

bool IsTag(QByteArrayView lowered) {
    const qsizetype name = lowered.startsWith("</") ? 2 : 1;
    return lowered.size() > name && Ascii::IsLetter(lowered[name]);
}

// The label that a <meta> at the page's beginning gives.
QByteArray MetaCharset(const QByteArray& bytes) {
    const QByteArray head = bytes.left(1024).toLower();
    qsizetype at = 0;
    while ((at = head.indexOf('<', at)) >= 0) {
        const QByteArrayView rest = QByteArrayView(head).sliced(at);
        if (rest.startsWith("<!--")) {
            const qsizetype end = head.indexOf("-->", at + 2);
            if (end < 0)
                return {};
            at = end + 3;
        } else if (IsMetaTag(rest)) {
            at += 5;
            const std::optional<QByteArray> label = LabelOfMeta(head, at);
            // A page whose <meta> could be read as ASCII is not in UTF-16, whatever it says.
            if (!label || !label->isEmpty())
                return label && label->startsWith("utf-16") ? QByteArray("utf-8") : label.value_or(QByteArray());
        } else if (IsTag(rest)) {
            // Passed attribute by attribute, so that a "<" inside a value does not count.
            while (at < head.size() && !Ascii::IsBlank(head[at]) && head[at] != '>')
                ++at;
            for (auto attribute = NextAttribute(head, at); !attribute || !attribute->Name.isEmpty();
                 attribute = NextAttribute(head, at))
                if (!attribute)
                    return {};
        } else if (rest.startsWith("<!") || rest.startsWith("</") || rest.startsWith("<?")) {
            at = head.indexOf('>', at);
            if (at < 0)
                return {};
        } else {
            ++at;
        }
    }
    return {};
}

// The bytes at the beginning that end with an ASCII character, so none is cut.
qsizetype WholeCharacters(QByteArrayView bytes) {
    qsizetype end = bytes.size();
    while (end > 0 && static_cast<unsigned char>(bytes[end - 1]) >= 0x80)
        --end;
    return end;
}

// The text of a device that is `head` and what follows, when it is UTF-8 throughout and neither shrinks nor grows
// meanwhile.
std::optional<QString> DecodeUtf8InPieces(QIODevice& device, QByteArray piece, qsizetype size) {
    const qsizetype pieceSize = piece.size();
    QStringDecoder decode(QStringConverter::Utf8,
                          QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text(size, Qt::Uninitialized); // there are never more characters than bytes
    QChar* end = text.data();
    for (qsizetype done = 0;;) {
        const bool last = done + piece.size() == size;
        const qsizetype whole = last ? piece.size() : WholeCharacters(piece);
        if (done + whole > size)
            return std::nullopt;
        end = decode.appendToBuffer(end, QByteArrayView(piece).first(whole));
        if (decode.hasError())
            return std::nullopt;
        if (last)
            break;
        done += whole;
        const qsizetype kept = piece.size() - whole;
        std::memmove(piece.data(), piece.constData() + whole, static_cast<size_t>(kept));
        piece.resize(pieceSize + kept);
        const qint64 now = device.read(piece.data() + kept, pieceSize);
        if (now <= 0)
            return std::nullopt;
        piece.resize(kept + now);
    }
    text.truncate(end - text.constData());
    return text;
}

} // namespace

QByteArray CharsetOf(const QByteArray& contentType) {
    const QByteArray lowered = contentType.toLower();
    qsizetype at = 0;
    while ((at = lowered.indexOf("charset", at)) >= 0) {
        at += 7;
        while (at < lowered.size() && Ascii::IsBlank(lowered[at]))
            ++at;
        if (at >= lowered.size() || lowered[at] != '=')
            continue;
        QByteArray value = lowered.sliced(at + 1).trimmed();
        if (value.startsWith('"') || value.startsWith('\'')) {
            const qsizetype end = value.indexOf(value[0], 1);
            return end < 0 ? QByteArray() : value.sliced(1, end - 1).trimmed();
        }
        qsizetype end = 0;
        while (end < value.size() && !Ascii::IsBlank(value[end]) && value[end] != ';')
            ++end;
        return value.first(end);
    }
    return {};
}

QString DecodePage(const QByteArray& bytes, const QByteArray& contentType) {
    if (const auto text = DecodeByLabel(CharsetOf(contentType), bytes))
        return *text;
    if (const auto text = DecodeByMark(bytes))
        return *text;
    if (const auto text = DecodeByLabel(MetaCharset(bytes), bytes))
        return *text;
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? FromWindows1252(bytes) : text;
}

QString DecodePage(QIODevice& device) {
    constexpr qsizetype pieceSize = 1 << 16;
    const QByteArray head = device.isSequential() ? QByteArray() : device.read(pieceSize);
    if (head.size() == pieceSize && device.pos() == pieceSize) {
        const QByteArray label = MetaCharset(head);
        if (!DecodeByMark(head.first(3)) && (label.isEmpty() || label.startsWith("utf")))
            if (std::optional<QString> text = DecodeUtf8InPieces(device, head, device.size()))
                return *std::move(text);
        device.seek(0);
        return DecodePage(device.readAll());
    }
    return DecodePage(head + device.readAll());
}

} // namespace Brindle
