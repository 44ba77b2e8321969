#include "page/Selector.h"

#include "core/Errors.h"
#include "page/SelectorParts.h"
#include "toolkit/Ascii.h"

#include <algorithm>
#include <iterator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int deepestNesting = 16;
constexpr qint32 largestStep = 1'000'000'000;

bool IsLineEnd(char16_t c) {
    return c == u'\n' || c == u'\r' || c == u'\f';
}
bool BeginsName(char16_t c) {
    return Ascii::IsLetter(c) || c == u'_' || c >= 0x80;
}
bool IsOfName(char16_t c) {
    return BeginsName(c) || Ascii::IsDigit(c) || c == u'-';
}
QString Lowered(QString text) {
    for (QChar& c : text)
        c = Ascii::Lower(c);
    return text;
}

// HTML's attributes whose values are compared in any case (section 4.16.2).
bool HasValuesInAnyCase(const QString& attribute) {
    static constexpr QStringView names[] = {
        u"accept",     u"accept-charset", u"align",     u"alink",    u"axis",     u"bgcolor", u"charset",
        u"checked",    u"clear",          u"codetype",  u"color",    u"compact",  u"declare", u"defer",
        u"dir",        u"direction",      u"disabled",  u"enctype",  u"face",     u"frame",   u"hreflang",
        u"http-equiv", u"lang",           u"language",  u"link",     u"media",    u"method",  u"multiple",
        u"nohref",     u"noresize",       u"noshade",   u"nowrap",   u"readonly", u"rel",     u"rev",
        u"rules",      u"scope",          u"scrolling", u"selected", u"shape",    u"target",  u"text",
        u"type",       u"valign",         u"valuetype", u"vlink"};
    return std::find(std::begin(names), std::end(names), attribute) != std::end(names);
}

// Reads a selector from left to right, without looking back.
class SelectorReader {
public:
    explicit SelectorReader(QStringView text) : text_(text) {}

    SelectorList Read() {
        SkipBlanks();
        if (AtEnd())
            Fail(u"there is no selector"_s);
        list_.Complex = ReadList(false);
        if (!AtEnd())
            Fail(u"\"%1\" cannot stand here"_s.arg(Here()));
        return std::move(list_);
    }

private:
    [[noreturn]] void FailAt(qsizetype at, const QString& reason) const {
        throw Failure(u"selector, character %1: %2"_s.arg(at + 1).arg(reason));
    }
    [[noreturn]] void Fail(const QString& reason) const { FailAt(at_, reason); }

    bool AtEnd() const { return at_ >= text_.size(); }
    char16_t Peek(qsizetype ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead].unicode() : u'\0';
    }
    // What stands here, for a message.
    QString Here() const {
        const QStringView rest = text_.sliced(at_);
        const QString character = rest.first(rest.size() > 1 && rest[0].isHighSurrogate() ? 2 : 1).toString();
        return character[0] < u' ' ? u"a control character"_s : character;
    }
    bool Take(char16_t c) {
        if (AtEnd() || Peek() != c)
            return false;
        ++at_;
        return true;
    }
    void Need(char16_t c) {
        if (!Take(c))
            Fail(AtEnd() ? u"\"%1\" is missing at the end"_s.arg(QChar(c))
                         : u"\"%1\" is missing before \"%2\""_s.arg(QChar(c)).arg(Here()));
    }

    // Blanks and comments; whether there was a blank.
    bool SkipBlanks() {
        bool blank = false;
        while (!AtEnd()) {
            if (Ascii::IsBlank(Peek())) {
                blank = true;
                ++at_;
            } else if (Peek() == u'/' && Peek(1) == u'*') {
                const qsizetype end = text_.indexOf(u"*/", at_ + 2);
                if (end < 0)
                    Fail(u"the comment has no end"_s);
                at_ = end + 2;
            } else {
                break;
            }
        }
        return blank;
    }

    std::vector<ComplexSelector> ReadList(bool relative) {
        std::vector<ComplexSelector> list;
        do {
            SkipBlanks();
            list.push_back(ReadComplex(relative));
        } while (Take(u','));
        return list;
    }

    bool AtEndOfComplex() const { return AtEnd() || Peek() == u',' || Peek() == u')'; }

    Relation TakeRelation() {
        if (Take(u'>'))
            return Relation::Child;
        if (Take(u'+'))
            return Relation::Next;
        return Take(u'~') ? Relation::Later : Relation::None;
    }

    ComplexSelector ReadComplex(bool relative) {
        ComplexSelector complex;
        Relation relation = Relation::None;
        if (relative) {
            relation = TakeRelation();
            SkipBlanks();
            if (relation == Relation::None)
                relation = Relation::Descendant;
        }
        for (;;) {
            const qsizetype begin = at_;
            complex.push_back(ReadCompound(relation));
            CheckScope(complex, begin);
            const bool blank = SkipBlanks();
            if (AtEndOfComplex())
                return complex;
            relation = TakeRelation();
            SkipBlanks();
            if (relation == Relation::None) {
                if (!blank)
                    Fail(u"\"%1\" cannot stand here"_s.arg(Here()));
                relation = Relation::Descendant;
            }
        }
    }

    void CheckScope(const ComplexSelector& complex, qsizetype begin) const {
        const auto holdsScope = [](const CompoundSelector& compound) {
            return std::any_of(compound.Tests.begin(), compound.Tests.end(),
                               [](const SimpleSelector& test) { return test.Test == SelectorTest::Scope; });
        };
        if (holdsScope(complex.back()) && (complex.size() > 1 || depth_ > 0))
            FailAt(begin, u":scope can only stand at the beginning"_s);
        if (complex.size() == 2 && holdsScope(complex.front()) && complex.back().Before != Relation::Descendant &&
            complex.back().Before != Relation::Child)
            FailAt(begin, u"behind :scope only what lies within it can be selected"_s);
    }

    CompoundSelector ReadCompound(Relation relation) {
        CompoundSelector compound;
        compound.Before = relation;
        const qsizetype begin = at_;
        if (Take(u'*')) {
        } else if (BeginsIdentifier()) {
            SimpleSelector test;
            test.LowerName = Lowered(ReadIdentifier());
            compound.Tests.push_back(std::move(test));
        }
        if (Peek() == u'|' && !AtEnd())
            Fail(u"namespaces are not known here"_s);
        for (;;) {
            if (Take(u'.'))
                compound.Tests.push_back(ReadNamed(SelectorTest::Class, u"the name of a class"_s));
            else if (Take(u'#'))
                compound.Tests.push_back(ReadNamed(SelectorTest::Id, u"an id"_s));
            else if (Take(u'['))
                compound.Tests.push_back(ReadAttribute());
            else if (Take(u':'))
                compound.Tests.push_back(ReadPseudoClass());
            else
                break;
        }
        if (at_ == begin)
            Fail(AtEnd() ? u"an element is missing at the end"_s
                         : u"an element is missing before \"%1\""_s.arg(Here()));
        return compound;
    }

    SimpleSelector ReadNamed(SelectorTest kind, const QString& what) {
        if (!BeginsIdentifier())
            Fail(what + u" is missing"_s);
        SimpleSelector test;
        test.Test = kind;
        test.Value = ReadIdentifier();
        return test;
    }

    SimpleSelector ReadAttribute() {
        SkipBlanks();
        if (!BeginsIdentifier())
            Fail(u"the name of an attribute is missing"_s);
        SimpleSelector test;
        test.Test = SelectorTest::Attribute;
        test.LowerName = Lowered(ReadIdentifier());
        SkipBlanks();
        if (Take(u']'))
            return test;
        test.Operator = ReadOperator();
        test.AnyCase = HasValuesInAnyCase(test.LowerName);
        SkipBlanks();
        if (Peek() == u'"' || Peek() == u'\'')
            test.Value = ReadString();
        else if (BeginsIdentifier())
            test.Value = ReadIdentifier();
        else
            Fail(u"the value must stand in quotes"_s);
        SkipBlanks();
        if (Peek() == u'i' || Peek() == u'I') {
            ++at_;
            test.AnyCase = true;
            SkipBlanks();
        }
        Need(u']');
        return test;
    }

    AttributeOperator ReadOperator() {
        static constexpr std::pair<char16_t, AttributeOperator> operators[] = {
            {u'^', AttributeOperator::Begins},
            {u'$', AttributeOperator::Ends},
            {u'*', AttributeOperator::Contains},
            {u'~', AttributeOperator::HasWord},
            {u'|', AttributeOperator::BeginsWithPart}};
        for (const auto& [sign, meaning] : operators)
            if (Peek() == sign && Peek(1) == u'=') {
                at_ += 2;
                return meaning;
            }
        Need(u'=');
        return AttributeOperator::Equals;
    }

    SimpleSelector ReadPseudoClass() {
        const qsizetype begin = at_ - 1;
        if (Peek() == u':')
            FailAt(begin, u"pseudo-elements are not known here"_s);
        if (!BeginsIdentifier())
            Fail(u"the name of a pseudo-class is missing"_s);
        const QString name = Lowered(ReadIdentifier());
        SimpleSelector test;
        if (Take(u'(')) {
            if (!ReadArguments(name, test))
                FailAt(begin, u":%1() is not known here"_s.arg(EscapedIdentifier(name)));
            SkipBlanks();
            Need(u')');
        } else if (name == u"first-child") {
            test.Test = SelectorTest::NthChild;
            test.Offset = 1;
        } else if (name == u"last-child") {
            test.Test = SelectorTest::LastChild;
        } else if (name == u"scope") {
            test.Test = SelectorTest::Scope;
        } else {
            FailAt(begin, u":%1 is not known here"_s.arg(EscapedIdentifier(name)));
        }
        return test;
    }

    bool ReadArguments(const QString& name, SimpleSelector& test) {
        if (name == u"not") {
            test.Test = SelectorTest::Not;
            test.Arguments = ReadNested(false);
        } else if (name == u"has") {
            if (inHas_)
                Fail(u"a :has() cannot hold another one"_s);
            inHas_ = true;
            test.Test = SelectorTest::Has;
            test.Arguments = ReadNested(true);
            inHas_ = false;
        } else if (name == u"has-text") {
            test.Test = SelectorTest::HasText;
            SkipBlanks();
            const qsizetype begin = at_;
            if (Peek() != u'"' && Peek() != u'\'')
                Fail(u"the text must stand in quotes"_s);
            test.Value = ReadString().replace(QChar(QChar::Nbsp), u' ').simplified();
            if (test.Value.isEmpty())
                FailAt(begin, u"there is no text to look for"_s);
        } else if (name == u"nth-child" || name == u"nth-of-type") {
            test.Test = name == u"nth-child" ? SelectorTest::NthChild : SelectorTest::NthOfType;
            ReadPlaces(test);
        } else {
            return false;
        }
        return true;
    }

    int ReadNested(bool relative) {
        if (++depth_ > deepestNesting)
            Fail(u"too many brackets within each other"_s);
        std::vector<ComplexSelector> list = ReadList(relative);
        --depth_;
        list_.Nested.push_back(std::move(list));
        return static_cast<int>(list_.Nested.size()) - 1;
    }

    // The notation "An+B" (CSS Syntax, section 6).
    void ReadPlaces(SimpleSelector& test) {
        SkipBlanks();
        const qsizetype begin = at_;
        if (BeginsIdentifier() && Peek() != u'-' && (Peek() | 0x20) != u'n') {
            const QString word = Lowered(ReadIdentifier());
            if (word != u"odd" && word != u"even")
                FailAt(begin, u"places are written as odd, even, 3 or 2n+1"_s);
            test.Step = 2;
            test.Offset = word == u"odd" ? 1 : 0;
            return;
        }
        const bool negative = Peek() == u'-';
        if (negative || Peek() == u'+')
            ++at_;
        const bool hasNumber = Ascii::IsDigit(Peek());
        const qint32 number = hasNumber ? ReadNumber() : 1;
        const qint32 first = negative ? -number : number;
        if ((Peek() | 0x20) != u'n') {
            if (!hasNumber)
                FailAt(begin, u"places are written as odd, even, 3 or 2n+1"_s);
            test.Offset = first;
            return;
        }
        ++at_;
        test.Step = first;
        const qsizetype behind = at_;
        SkipBlanks();
        if (Peek() != u'+' && Peek() != u'-') {
            at_ = behind;
            return;
        }
        const bool back = Peek() == u'-';
        ++at_;
        SkipBlanks();
        if (!Ascii::IsDigit(Peek()))
            Fail(u"a number is missing"_s);
        const qint32 offset = ReadNumber();
        test.Offset = back ? -offset : offset;
    }

    qint32 ReadNumber() {
        qint32 number = 0;
        for (; Ascii::IsDigit(Peek()); ++at_)
            number = number > largestStep / 10 ? largestStep : number * 10 + (Peek() - u'0');
        return std::min(number, largestStep);
    }

    bool BeginsEscape(qsizetype ahead) const {
        return Peek(ahead) == u'\\' && at_ + ahead + 1 < text_.size() && !IsLineEnd(Peek(ahead + 1));
    }
    bool BeginsIdentifier() const {
        if (AtEnd())
            return false;
        if (Peek() == u'-')
            return BeginsName(Peek(1)) || Peek(1) == u'-' || BeginsEscape(1);
        return BeginsName(Peek()) || BeginsEscape(0);
    }

    QString ReadIdentifier() {
        QString name;
        while (!AtEnd()) {
            if (IsOfName(Peek()))
                name += QChar(text_[at_++]);
            else if (BeginsEscape(0))
                ReadEscape(name);
            else
                break;
        }
        return name;
    }

    void ReadEscape(QString& to) {
        ++at_;
        if (Ascii::HexValue(Peek()) < 0) {
            to += text_[at_++];
            return;
        }
        char32_t code = 0;
        for (int digits = 0; digits < 6 && !AtEnd() && Ascii::HexValue(Peek()) >= 0; ++digits, ++at_)
            code = code * 16 + static_cast<char32_t>(Ascii::HexValue(Peek()));
        if (Peek() == u'\r' && Peek(1) == u'\n')
            at_ += 2;
        else if (!AtEnd() && Ascii::IsBlank(Peek()))
            ++at_;
        if (code == 0 || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
            code = QChar::ReplacementCharacter;
        to += QChar::fromUcs4(code);
    }

    QString ReadString() {
        const qsizetype begin = at_;
        const char16_t quote = Peek();
        ++at_;
        QString value;
        while (!AtEnd() && Peek() != quote) {
            if (IsLineEnd(Peek()))
                Fail(u"a text cannot go over the end of a line"_s);
            if (Peek() != u'\\') {
                value += text_[at_++];
            } else if (BeginsEscape(0)) {
                ReadEscape(value);
            } else { // before the end of a line, which is left out
                at_ += Peek(1) == u'\r' && Peek(2) == u'\n' ? 3 : 2;
            }
        }
        if (at_ >= text_.size())
            FailAt(begin, u"the text has no closing quote"_s);
        ++at_;
        return value;
    }

    QStringView text_;
    qsizetype at_ = 0;
    int depth_ = 0;
    bool inHas_ = false;
    SelectorList list_;
};

void AppendAsCode(QString& to, char16_t c) {
    to += u'\\' + QString::number(c, 16) + u' ';
}

} // namespace

Selector Selector::Parse(QStringView text) {
    if (text.size() > LongestText)
        throw Failure(
            u"selector, character %1: it is longer than %2 characters"_s.arg(LongestText + 1).arg(LongestText));
    QString own = text.toString();
    // Zeros are no characters of a style sheet (CSS Syntax, section 3.3).
    own.replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter));
    auto parts = std::make_shared<const SelectorList>(SelectorReader(own).Read());
    return {std::move(own), std::move(parts)};
}

QString EscapedIdentifier(QStringView name) {
    QString escaped;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name[i].unicode();
        if (c == 0)
            escaped += QChar(QChar::ReplacementCharacter);
        else if (c < 0x20 || c == 0x7f || (Ascii::IsDigit(c) && (i == 0 || (i == 1 && name[0] == u'-'))))
            AppendAsCode(escaped, c);
        else if (!IsOfName(c) || (c == u'-' && name.size() == 1))
            escaped += QString(u'\\') + QChar(c);
        else
            escaped += QChar(c);
    }
    return escaped;
}

QString EscapedString(QStringView text) {
    QString escaped(u'"');
    for (const QChar character : text) {
        const char16_t c = character.unicode();
        if (c == 0)
            escaped += QChar(QChar::ReplacementCharacter);
        else if (c < 0x20 || c == 0x7f)
            AppendAsCode(escaped, c);
        else if (c == u'"' || c == u'\\')
            escaped += QString(u'\\') + character;
        else
            escaped += character;
    }
    return escaped + u'"';
}

} // namespace Brindle
