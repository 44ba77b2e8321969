#include "page/MarkupScanner.h"

#include "toolkit/Ascii.h"

#include <algorithm>
#include <iterator>

namespace Brindle {

namespace {

// Whether `text` begins with `name`, which is written in small letters.
bool BeginsWith(QStringView text, QStringView name) {
    return text.size() >= name.size() &&
           std::equal(name.begin(), name.end(), text.begin(), [](QChar n, QChar t) { return n == Ascii::Lower(t); });
}

bool IsNamed(QStringView text, QStringView name) {
    return text.size() == name.size() && BeginsWith(text, name);
}

qsizetype BehindOrEnd(QStringView text, qsizetype found, qsizetype length) {
    return found < 0 ? text.size() : found + length;
}

} // namespace

bool HoldsRawText(QStringView name) {
    static constexpr QStringView names[] = {u"script",   u"style",   u"noscript", u"iframe",
                                            u"noframes", u"noembed", u"xmp",      u"plaintext"};
    return std::any_of(std::begin(names), std::end(names), [name](QStringView n) { return IsNamed(name, n); });
}

bool MarkupScanner::NextTag() {
    if (inTag_ && !FinishTag())
        return false;
    for (;;) {
        pos_ = text_.indexOf(u'<', pos_);
        if (pos_ < 0) {
            pos_ = text_.size();
            return false;
        }
        const QChar next = At(pos_ + 1);
        closing_ = next == u'/';
        const qsizetype name = pos_ + (closing_ ? 2 : 1);
        if (Ascii::IsLetter(At(name))) {
            tagBegin_ = pos_;
            nameBegin_ = name;
            nameEnd_ = name;
            while (nameEnd_ < text_.size() && !Ascii::IsBlank(text_[nameEnd_]) && text_[nameEnd_] != u'/' &&
                   text_[nameEnd_] != u'>')
                ++nameEnd_;
            pos_ = nameEnd_;
            inTag_ = true;
            closed_ = false;
            selfClosing_ = false;
            return true;
        }
        if (next == u'!' && At(pos_ + 2) == u'-' && At(pos_ + 3) == u'-')
            pos_ = EndOfComment(pos_ + 4);
        else if (next == u'!' || next == u'?' || (closing_ && name < text_.size()))
            pos_ = BehindOrEnd(text_, text_.indexOf(u'>', pos_ + 2), 1);
        else
            ++pos_; // a "<" of the text
    }
}

bool MarkupScanner::NextAttribute() {
    if (!inTag_ || closed_)
        return false;
    selfClosing_ = false;
    for (;;) {
        SkipSpace();
        if (pos_ >= text_.size())
            return false;
        if (text_[pos_] == u'>') {
            ++pos_;
            closed_ = true;
            return false;
        }
        if (text_[pos_] != u'/')
            break;
        ++pos_;
        selfClosing_ = At(pos_) == u'>';
    }
    attribute_.Begin = pos_;
    ++pos_; // a "=" that begins a name belongs to it
    while (pos_ < text_.size() && !Ascii::IsBlank(text_[pos_]) && text_[pos_] != u'/' && text_[pos_] != u'>' &&
           text_[pos_] != u'=')
        ++pos_;
    attribute_.Name = text_.mid(attribute_.Begin, pos_ - attribute_.Begin);
    attribute_.Value = {};
    attribute_.Quoting = Quote::NoValue;
    attribute_.End = pos_;
    SkipSpace();
    if (At(pos_) != u'=') {
        pos_ = attribute_.End;
        return true;
    }
    ++pos_;
    SkipSpace();
    const QChar quote = At(pos_);
    if (quote == u'"' || quote == u'\'') {
        const qsizetype begin = pos_ + 1;
        const qsizetype end = text_.indexOf(quote, begin);
        attribute_.Quoting = quote == u'"' ? Quote::Double : Quote::Single;
        attribute_.Value = text_.mid(begin, end < 0 ? -1 : end - begin);
        pos_ = BehindOrEnd(text_, end, 1);
    } else {
        const qsizetype begin = pos_;
        while (pos_ < text_.size() && !Ascii::IsBlank(text_[pos_]) && text_[pos_] != u'>')
            ++pos_;
        attribute_.Quoting = Quote::Bare;
        attribute_.Value = text_.mid(begin, pos_ - begin);
    }
    attribute_.End = pos_;
    return true;
}

// Steps over what is left of the tag and over the raw text behind it.
bool MarkupScanner::FinishTag() {
    while (NextAttribute()) {
    }
    inTag_ = false;
    if (!closed_)
        return false;
    if (!closing_ && StartsRawText())
        pos_ = EndOfRawText(Name());
    return true;
}

bool MarkupScanner::StartsRawText() const {
    return HoldsRawText(Name()) ||
           (reading_ == Reading::Page && (IsNamed(Name(), u"title") || IsNamed(Name(), u"textarea")));
}

void MarkupScanner::SkipSpace() {
    while (pos_ < text_.size() && Ascii::IsBlank(text_[pos_]))
        ++pos_;
}

// HTML, section 13.2.5.43 and on: "-->" and "--!>" end a comment, "<!-->" and "<!--->" are whole ones.
qsizetype MarkupScanner::EndOfComment(qsizetype from) const {
    if (At(from) == u'>')
        return from + 1;
    if (At(from) == u'-' && At(from + 1) == u'>')
        return from + 2;
    for (qsizetype at = from;; ++at) {
        at = text_.indexOf(u"--", at);
        if (at < 0)
            return text_.size();
        if (At(at + 2) == u'>')
            return at + 3;
        if (At(at + 2) == u'!' && At(at + 3) == u'>')
            return at + 4;
    }
}

// Whether a tag name, given in the case of a start tag, stands whole at a position.
bool MarkupScanner::NameAt(qsizetype at, QStringView name) const {
    const qsizetype end = at + name.size();
    if (end > text_.size() || text_.mid(at, name.size()).compare(name, Qt::CaseInsensitive) != 0)
        return false;
    return Ascii::IsBlank(At(end)) || At(end) == u'/' || At(end) == u'>';
}

qsizetype MarkupScanner::EndOfRawText(QStringView name) {
    if (IsNamed(name, u"script"))
        return EndOfScript(pos_);
    if (IsNamed(name, u"plaintext")) {
        if (reading_ == Reading::Page)
            return text_.size();
        // It never ends in a page; in a serialisation the last end tag is its own.
        const qsizetype last = text_.lastIndexOf(u"</plaintext>", -1, Qt::CaseInsensitive);
        return last < pos_ ? text_.size() : last;
    }
    for (qsizetype at = pos_;; at += 2) {
        at = text_.indexOf(u"</", at);
        if (at < 0)
            return text_.size();
        if (NameAt(at + 2, name))
            return at;
    }
}

// HTML, sections 13.2.5.15 to 13.2.5.31: within a "<!--" of a script a nested script hides its own end tag.
qsizetype MarkupScanner::EndOfScript(qsizetype from) const {
    bool escaped = false;
    bool nested = false;
    for (qsizetype at = from; at < text_.size(); ++at) {
        const QChar c = text_[at];
        if (c == u'<') {
            if (!escaped && text_.mid(at, 4) == u"<!--") {
                escaped = true;
                at += 1; // its dashes can be those of "-->" too
            } else if (escaped && !nested && NameAt(at + 1, u"script")) {
                nested = true;
            } else if (At(at + 1) == u'/' && NameAt(at + 2, u"script")) {
                if (!nested)
                    return at;
                nested = false;
            }
        } else if (c == u'-' && escaped && At(at + 1) == u'-' && At(at + 2) == u'>') {
            escaped = false;
            nested = false;
        }
    }
    return text_.size();
}

} // namespace Brindle
