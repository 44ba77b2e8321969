#include "i18n/LanguageFile.h"

#include "core/DataFiles.h"
#include "toolkit/Text.h"
#include "toolkit/WorkingText.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A language file has some ten kilobytes; reading stops far beyond that, whatever the file is.
constexpr qint64 sizeLimit = 4 << 20;

} // namespace

QString DecodeLanguageText(const QByteArray& bytes) {
    const auto marked = QStringConverter::encodingForData(bytes);
    if (!marked)
        return QString::fromLocal8Bit(bytes);
    QStringDecoder decode(*marked);
    return decode(bytes);
}

QString ReadLanguageText(const QString& fileName) {
    QFile file(fileName);
    // Something else of that name, a pipe for example, could keep the reader waiting.
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(sizeLimit + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > sizeLimit)
        return {};
    return DecodeLanguageText(bytes);
}

const QList<Language>& OfferedLanguages() {
    static const QList<Language> languages{
        {u"en"_s, u"English"_s}, {u"fr"_s, u"French"_s}, {u"es"_s, u"Spanish"_s}, {u"it"_s, u"Italian"_s}};
    return languages;
}

QString LanguageFolder() {
    return DataFile(u"languages"_s);
}

QString LanguageFileName(const QString& code) {
    return LanguageFolder() + u'/' + code + u".dat";
}

LanguageFile::LanguageFile(const QString& text) : empty_(text.isEmpty()) {
    const auto readSequence = [&](QStringView name, auto& values, auto skips) {
        WorkingText rest(text);
        for (int number = 1; number < static_cast<int>(values.size()); ++number) {
            if (skips(number))
                continue;
            const QString tag = name + QString::number(number);
            const QString opening = u'<' + tag + u'>';
            const qsizetype before = rest.Position();
            values.at(static_cast<size_t>(number)) =
                rest.ExtractBetween(opening, QString(u"</" + tag + u'>')).toString();
            if (rest.Position() == before)
                missing_.append(tag);
        }
    };
    readSequence(u"main", main_, [](int number) { return number == NoMain; });
    readSequence(u"settings", settings_, [](int) { return false; });
}

QStringList LanguageFile::ColumnCaptions() const {
    QStringList captions;
    for (int number = 21; number <= 34; ++number)
        captions.append(Main(number));
    return captions;
}

void LanguageFile::FillMessages(MessageTexts& texts, int number, const QString& text) const {
    if (empty_)
        return;
    const auto completed = [this](int slot, const QString& value) {
        QString result = Main(slot);
        ReplaceAll(result, u"[VAR1]", value);
        return result;
    };
    texts.Set(Message::OfferNumber, completed(3, QString::number(number)));
    for (int slot = 43; slot <= LastMain; ++slot)
        texts.Set(static_cast<Message>(slot), Main(slot));
    texts.Set(Message::ProductText, completed(68, text));
}

} // namespace Brindle
