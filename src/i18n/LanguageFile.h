#pragma once

#include "core/MessageTexts.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>

namespace Brindle {

/// The text of a language file: a byte-order mark selects UTF-8 or UTF-16, without one it is in the system's 8-bit code
/// page. Empty when there is no such file or it cannot be read.
QString ReadLanguageText(const QString& fileName);
/// The same for the bytes of a file.
QString DecodeLanguageText(const QByteArray& bytes);

/// A language that the program offers.
struct Language {
    QString Code; ///< the name of its file
    QString Name; ///< in English
};
/// In the order in which they are offered.
const QList<Language>& OfferedLanguages();

/// The folder of the language files that come with the program.
QString LanguageFolder();
/// The file of a language code in it.
QString LanguageFileName(const QString& code);

/// The elements of a language file, read in the fixed order of the windows: an element that stands before one that was
/// read earlier is not found, and reads as empty.
class LanguageFile {
public:
    static constexpr int LastMain = 69;     ///< main1 to main69 ...
    static constexpr int NoMain = 11;       ///< ... without main11
    static constexpr int LastSettings = 23; ///< settings1 to settings23

    explicit LanguageFile(const QString& text);

    /// Nothing was read: the windows keep the texts that they have.
    bool IsEmpty() const { return empty_; }
    const QString& Main(int number) const { return main_.at(static_cast<size_t>(number)); }
    const QString& Settings(int number) const { return settings_.at(static_cast<size_t>(number)); }
    /// The captions of the fourteen columns of the results list.
    QStringList ColumnCaptions() const;
    /// Names of the elements that were not found, in the order of reading.
    const QStringList& Missing() const { return missing_; }

    /// Fills the message slots. `number` and `text` stand in for the placeholders of the two slots that are completed
    /// when the language is loaded.
    void FillMessages(MessageTexts& texts, int number, const QString& text) const;

private:
    bool empty_ = true;
    std::array<QString, LastMain + 1> main_;
    std::array<QString, LastSettings + 1> settings_;
    QStringList missing_;
};

} // namespace Brindle
