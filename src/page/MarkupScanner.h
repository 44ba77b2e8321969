#pragma once

#include <QStringView>

namespace Brindle {

/// Walks over the tags of a page in one pass, as the tokeniser of HTML (section 13.2.5) would find them: comments,
/// doctypes and the raw text of scripts and their like are stepped over. It builds nothing and copies nothing; all
/// positions are offsets into the text.
class MarkupScanner {
public:
    enum class Quote { NoValue, Bare, Double, Single };

    struct Attribute {
        qsizetype Begin = 0; ///< of the name
        qsizetype End = 0;   ///< behind the value, its quote included
        QStringView Name;
        QStringView Value; ///< between the quotes, escapes as they stand
        Quote Quoting = Quote::NoValue;
    };

    /// What is read: a page as a server sends it, where a title or textarea can hold "<" as it stands, or a
    /// serialisation, where it cannot (but the title of an SVG picture can hold elements).
    enum class Reading { Page, Serialisation };

    MarkupScanner(QStringView text, Reading reading) : text_(text), reading_(reading) {}

    /// Steps to the next start or end tag. False when there is none left, a tag that is not closed before the end of
    /// the text being none.
    bool NextTag();
    /// Steps to the next attribute of the tag; false when it has no more.
    bool NextAttribute();

    bool Closing() const { return closing_; }
    QStringView Name() const { return text_.mid(nameBegin_, nameEnd_ - nameBegin_); }
    qsizetype NameBegin() const { return nameBegin_; }
    qsizetype NameEnd() const { return nameEnd_; }
    const Attribute& Current() const { return attribute_; }
    /// The tag has its ">". Known once NextAttribute has returned false.
    bool Closed() const { return closed_; }
    /// The tag ends in "/>". Known once NextAttribute has returned false.
    bool SelfClosing() const { return selfClosing_; }
    /// Where the scanner stands: behind the tag once NextAttribute has returned false.
    qsizetype Position() const { return pos_; }
    /// The offset of the tag's "<".
    qsizetype TagBegin() const { return tagBegin_; }

private:
    QChar At(qsizetype i) const { return i < text_.size() ? text_[i] : QChar(); }
    bool FinishTag();
    bool StartsRawText() const;
    qsizetype EndOfComment(qsizetype from) const;
    qsizetype EndOfRawText(QStringView name);
    qsizetype EndOfScript(qsizetype from) const;
    bool NameAt(qsizetype at, QStringView name) const;
    void SkipSpace();

    QStringView text_;
    Reading reading_;
    qsizetype pos_ = 0;
    qsizetype tagBegin_ = 0;
    qsizetype nameBegin_ = 0;
    qsizetype nameEnd_ = 0;
    bool inTag_ = false;
    bool closing_ = false;
    bool closed_ = false;
    bool selfClosing_ = false;
    Attribute attribute_;
};

/// Whether an HTML element of this name, in any case, holds raw text: tags in it are no tags (HTML, section 13.3).
/// Scripts being on, noscript is one of them.
bool HoldsRawText(QStringView name);

} // namespace Brindle
