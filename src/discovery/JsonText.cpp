#include "discovery/JsonText.h"

#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsBlank(QChar c) {
    return c.unicode() <= u' ' || c.isSpace() || c.unicode() == 0xfeff;
}

// What may stand in a name or word without quotation marks.
bool IsWord(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$' || c == u'@' || c == u'.' || c == u'+' || c == u'-';
}

} // namespace

class JsonText::Reader {
public:
    Reader(JsonText& json, QStringView text) : json_(json), text_(text) {}

    std::vector<int> ReadAll() {
        std::vector<int> roots;
        while (SkipToValue()) {
            const QChar c = text_[at_];
            const qsizetype before = at_;
            if (c == u'{' || c == u'[') {
                if (const int root = ReadValue(0); root >= 0)
                    roots.push_back(root);
            }
            if (at_ == before)
                ++at_; // stray characters between the values
        }
        return roots;
    }

private:
    bool Is(QStringView what) const { return text_.sliced(at_).startsWith(what); }

    // Behind blanks, comments, wrappers and the commas and semicolons between values; false at the end.
    bool SkipToValue() {
        for (;;) {
            SkipBlanks();
            if (at_ >= text_.size())
                return false;
            if (text_[at_] != u',' && text_[at_] != u';')
                return true;
            ++at_;
        }
    }

    void SkipBlanks() {
        while (at_ < text_.size()) {
            const char16_t c = text_[at_].unicode();
            if (IsBlank(text_[at_])) {
                ++at_;
                continue;
            }
            if (c != u'/' && c != u'<' && c != u'-' && c != u']')
                return;
            if (Is(u"//"))
                SkipLine();
            else if (Is(u"/*"))
                SkipBehind(u"*/");
            else if (Is(u"<!--"))
                at_ += 4;
            else if (Is(u"-->") || Is(u"]]>"))
                at_ += 3;
            else if (Is(u"<![CDATA["))
                at_ += 9;
            else
                return;
        }
    }

    // A wrapper often hides behind a comment of a line: "//<![CDATA[" with the text behind it on the same line.
    void SkipLine() {
        at_ += 2;
        while (at_ < text_.size() && (text_[at_] == u' ' || text_[at_] == u'\t'))
            ++at_;
        if (at_ < text_.size() && (Is(u"<![CDATA[") || Is(u"]]>") || Is(u"<!--") || Is(u"-->")))
            return;
        while (at_ < text_.size() && text_[at_] != u'\n' && text_[at_] != u'\r')
            ++at_;
    }

    void SkipBehind(QStringView what) {
        const qsizetype end = text_.indexOf(what, at_ + 2);
        at_ = end < 0 ? text_.size() : end + what.size();
    }

    int Append(JsonKind kind) {
        if (static_cast<int>(json_.values_.size()) >= json_.bounds_.Values)
            return -1;
        json_.values_.emplace_back();
        json_.values_.back().Kind = kind;
        return static_cast<int>(json_.values_.size()) - 1;
    }

    JsonValue& At(int value) { return json_.values_[static_cast<size_t>(value)]; }

    // The value that begins here; -1 when there is none, or it lies beyond the bounds and was skipped.
    int ReadValue(int depth) {
        const QChar c = text_[at_];
        if (c == u'{' || c == u'[') {
            if (depth >= json_.bounds_.Depth) {
                SkipNested();
                return -1;
            }
            return ReadMembers(depth, c == u'{');
        }
        if (QuoteLength() > 0) {
            QString read = ReadText();
            const int value = Append(JsonKind::Text);
            if (value >= 0)
                At(value).Text = std::move(read);
            return value;
        }
        return ReadWord();
    }

    int ReadMembers(int depth, bool named) {
        const QChar close = named ? u'}' : u']';
        ++at_;
        const int parent = Append(named ? JsonKind::Object : JsonKind::Array);
        int last = -1;
        while (SkipToValue()) {
            const qsizetype before = at_;
            QChar c = text_[at_];
            if (c == close) {
                ++at_;
                break;
            }
            if (c == u'}' || c == u']') {
                // The other bracket: it ends this one too when one of its kind may be open, else it is one too many.
                if (depth > 0)
                    break;
                ++at_;
                continue;
            }
            QString key;
            if (named) {
                if (QuoteLength() > 0)
                    key = ReadName();
                else
                    key = ReadBareWord();
                SkipBlanks();
                if (at_ >= text_.size())
                    break;
                c = text_[at_];
                if (c != u':') {
                    if (at_ == before)
                        ++at_;
                    continue;
                }
                ++at_;
                SkipBlanks();
                if (at_ >= text_.size())
                    break;
                c = text_[at_];
                if (c == u',' || c == u'}' || c == u']')
                    continue;
            }
            const int value = ReadValue(depth + 1);
            if (at_ == before)
                ++at_;
            if (value < 0 || parent < 0)
                continue;
            At(value).Key = std::move(key);
            (last < 0 ? At(parent).First : At(last).Next) = value;
            last = value;
        }
        return parent;
    }

    // Behind an array or object and all that lies in it.
    void SkipNested() {
        qint64 open = 0;
        while (at_ < text_.size()) {
            const QChar c = text_[at_];
            if (QuoteLength() > 0) {
                ReadText();
                continue;
            }
            ++at_;
            if (c == u'{' || c == u'[')
                ++open;
            else if ((c == u'}' || c == u']') && --open <= 0)
                return;
        }
    }

    // How long the quotation mark is that stands here: some pages have it as an entity.
    qsizetype QuoteLength() const {
        const QChar c = text_[at_];
        if (c == u'"' || c == u'\'' || c == u'\u201c' || c == u'\u201d')
            return 1;
        if (c != u'&')
            return 0;
        return Is(u"&quot;") ? 6 : Is(u"&#34;") ? 5 : Is(u"&#x22;") ? 6 : 0;
    }

    // Whether what stands here can follow a text: otherwise the quotation mark before it belongs to the text.
    bool EndsText(qsizetype at) const {
        if (at < text_.size() && (text_[at] == u',' || text_[at] == u':' || text_[at] == u'}'))
            return true;
        while (at < text_.size() && IsBlank(text_[at]))
            ++at;
        return at >= text_.size() || IsAmong(text_[at], u",:}]/\"'<&;\u201c");
    }

    // The names of values are few: equal ones share their characters.
    QString ReadName() {
        QString name = ReadText();
        QString& known =
            names_[static_cast<size_t>(name.size() * 7 + (name.isEmpty() ? 0 : name.back().unicode())) % names_.size()];
        if (known != name)
            known = std::move(name);
        return known;
    }

    QString ReadText() {
        const qsizetype length = QuoteLength();
        const QStringView opened = text_.sliced(at_, length);
        const bool curly = opened[0] == u'\u201c' || opened[0] == u'\u201d';
        const QStringView quote = curly ? QStringView(u"\u201d") : opened;
        at_ += length;
        QString read;
        qsizetype copied = at_;
        while (at_ < text_.size()) {
            const QChar c = text_[at_];
            if (c != u'\\' && c != quote[0]) {
                ++at_;
                continue;
            }
            if (c == u'\\' && at_ + 1 < text_.size()) {
                read.append(text_.sliced(copied, at_ - copied));
                ++at_;
                AppendEscape(read);
                copied = at_;
            } else if (c == quote[0] && (quote.size() == 1 || Is(quote)) && EndsText(at_ + quote.size())) {
                const QStringView rest = text_.sliced(copied, at_ - copied);
                at_ += quote.size();
                return read.isEmpty() ? rest.toString() : read + rest;
            } else {
                ++at_;
            }
        }
        read.append(text_.sliced(copied));
        return read;
    }

    void AppendEscape(QString& read) {
        const QChar c = text_[at_++];
        switch (c.unicode()) {
        case u'b':
            read.append(u'\b');
            break;
        case u'f':
            read.append(u'\f');
            break;
        case u'n':
            read.append(u'\n');
            break;
        case u'r':
            read.append(u'\r');
            break;
        case u't':
            read.append(u'\t');
            break;
        case u'u':
            AppendCode(read, 4);
            break;
        case u'x':
            AppendCode(read, 2);
            break;
        default:
            read.append(c);
        }
    }

    void AppendCode(QString& read, int digits) {
        int code = 0;
        for (int i = 0; i < digits; ++i) {
            const int digit = at_ + i < text_.size() ? Ascii::HexValue(text_[at_ + i]) : -1;
            if (digit < 0) {
                read.append(digits == 4 ? u'u' : u'x');
                return;
            }
            code = code * 16 + digit;
        }
        at_ += digits;
        read.append(QChar(static_cast<char16_t>(code)));
    }

    QString ReadBareWord() {
        const qsizetype begin = at_;
        while (at_ < text_.size() && IsWord(text_[at_]))
            ++at_;
        return text_.sliced(begin, at_ - begin).toString();
    }

    int ReadWord() {
        QString word = ReadBareWord();
        if (word.isEmpty())
            return -1;
        const bool isTruth = word == u"true" || word == u"false";
        const bool isNull = word == u"null" || word == u"undefined" || word == u"NaN";
        const bool isNumber = word[0].isDigit() || word[0] == u'-' || word[0] == u'+' || word[0] == u'.';
        if (!isTruth && !isNull && !isNumber)
            return -1; // a word of a program
        const int value = Append(isNull ? JsonKind::Null : isTruth ? JsonKind::Boolean : JsonKind::Number);
        if (value >= 0 && !isNull)
            At(value).Text = std::move(word);
        return value;
    }

    JsonText& json_;
    QStringView text_;
    qsizetype at_ = 0;
    std::array<QString, 64> names_;
};

std::vector<int> JsonText::Read(QStringView text) {
    return Reader(*this, text.first(std::min(text.size(), bounds_.Size))).ReadAll();
}

} // namespace Brindle
