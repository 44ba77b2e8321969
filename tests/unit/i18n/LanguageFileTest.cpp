#include "i18n/LanguageFile.h"

#include "PrintTo.h"
#include "core/Lead.h"
#include "i18n/WindowTexts.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString shippedFolder = QStringLiteral(PROJECT_DIR "/languages/");

QString Tagged(const QString& tag, const QString& text) {
    return u'<' + tag + u'>' + text + u"</"_s + tag + u'>';
}

TEST(LanguageFile, ReadsForwardOnly) {
    const LanguageFile file(u"noise <main1>One</main1><MAIN2>\r\n Two\t</Main2><main5>Stop</main5><main4>Get</main4>"
                            "<main6>a<main7>b</main6><main8></main8><main9>nine</main10><main12>no end"
                            "<main13>13</main13><settings2>early</settings2><settings1>late</settings1>"_s);
    EXPECT_FALSE(file.IsEmpty());
    EXPECT_EQ(file.Main(1), u"One"_s);
    EXPECT_EQ(file.Main(2), u"\r\n Two\t"_s) << "any case of the tag, the text as it stands";
    EXPECT_EQ(file.Main(4), u"Get"_s);
    EXPECT_EQ(file.Main(5), u""_s) << "it stands before the one that was read last";
    EXPECT_EQ(file.Main(6), u"a<main7>b"_s) << "another tag is part of the text";
    EXPECT_EQ(file.Main(7), u""_s);
    EXPECT_EQ(file.Main(12), u""_s) << "never closed";
    EXPECT_EQ(file.Main(13), u"13"_s);
    EXPECT_EQ(file.Settings(1), u"late"_s) << "the settings are a sequence of their own, from the beginning";
    EXPECT_EQ(file.Settings(2), u""_s);

    QStringList missing = file.Missing();
    EXPECT_EQ(missing.mid(0, 4), (QStringList{u"main3"_s, u"main5"_s, u"main7"_s, u"main10"_s}));
    EXPECT_EQ(missing.size(), 68 - 8 + 22);
    EXPECT_FALSE(missing.contains(u"main11"_s));
    EXPECT_EQ(missing.last(), u"settings23"_s);
}

TEST(LanguageFile, FillsTheMessageSlots) {
    QString text;
    for (int number = 1; number <= LanguageFile::LastMain; ++number)
        text += Tagged(u"main%1"_s.arg(number), u"%1 [VAR1] [VAR1]"_s.arg(number));
    MessageTexts texts;
    texts.Set(Message::Request, u"kept"_s);
    LanguageFile(QString()).FillMessages(texts, 7, u"x"_s);
    EXPECT_EQ(texts.Text(Message::Request), u"kept"_s) << "an empty file changes nothing";

    LanguageFile(text).FillMessages(texts, 7, u"Brindle 3.16"_s);
    EXPECT_EQ(texts.Text(Message::OfferNumber), u"3 7 7"_s);
    EXPECT_EQ(texts.Text(Message::ProductText), u"68 Brindle 3.16 Brindle 3.16"_s);
    EXPECT_EQ(texts.Text(Message::LoadingWebsites), u"44 [VAR1] [VAR1]"_s);
    EXPECT_EQ(texts.WithNumber(Message::ListCount, 12), u"45 12 12"_s);
    EXPECT_EQ(texts.Text(Message::HarvestFinished), u"69 [VAR1] [VAR1]"_s);
    EXPECT_EQ(LanguageFile(text).ColumnCaptions().value(13), u"34 [VAR1] [VAR1]"_s);

    LanguageFile(u"only noise"_s).FillMessages(texts, 7, u"x"_s);
    EXPECT_EQ(texts.Text(Message::Request), u""_s) << "a missing element is an empty text";
}

TEST(WindowTexts, AreEnglishWhereTheFileLacksThem) {
    WindowTexts texts;
    texts.Load(u"<main1>x</main1><text-Reload>Recharger</text-Reload><text-NoAddress>[VAR2] [VAR1] [VAR3]"_s
               u"</text-NoAddress>"_s);
    EXPECT_EQ(texts.Text(WindowText::Reload), u"Recharger"_s);
    EXPECT_EQ(texts.Text(WindowText::CancelExport), WindowTexts::English(WindowText::CancelExport));
    EXPECT_EQ(texts.With(WindowText::NoAddress, {u"[VAR2]"_s, u"b"_s}), u"b [VAR2] "_s);
    texts.Load({});
    EXPECT_EQ(texts.Text(WindowText::Reload), u"Reload"_s);
}

TEST(ReadLanguageText, KnowsByteOrderMarks) {
    const QString text = u"<main1>Città €</main1>"_s;
    QByteArray little("\xFF\xFE", 2);
    QByteArray big("\xFE\xFF", 2);
    for (const QChar c : text) {
        const auto low = static_cast<char>(c.unicode() & 0xFF);
        const auto high = static_cast<char>(c.unicode() >> 8);
        little.append(low).append(high);
        big.append(high).append(low);
    }
    EXPECT_EQ(DecodeLanguageText("\xEF\xBB\xBF" + text.toUtf8()), text);
    EXPECT_EQ(DecodeLanguageText(little), text);
    EXPECT_EQ(DecodeLanguageText(big), text);
    EXPECT_EQ(DecodeLanguageText(text.toLocal8Bit()), text);
    EXPECT_EQ(DecodeLanguageText("\xEF\xBB\xBF"), u""_s);
}

TEST(ReadLanguageText, IsEmptyForWhatIsNoLanguageFile) {
    const QTemporaryDir folder;
    EXPECT_EQ(ReadLanguageText(folder.filePath(u"missing.dat"_s)), u""_s);
    EXPECT_EQ(ReadLanguageText(folder.path()), u""_s);
    QFile huge(folder.filePath(u"huge.dat"_s));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    EXPECT_EQ(ReadLanguageText(huge.fileName()), u""_s);
    ASSERT_TRUE(huge.resize(100 << 20));
    EXPECT_EQ(ReadLanguageText(huge.fileName()), u""_s);
}

class ShippedLanguage : public testing::TestWithParam<const char*> {};

TEST_P(ShippedLanguage, HasEveryTextInOrder) {
    const QString code = QString::fromLatin1(GetParam());
    QFile file(shippedFolder + code + u".dat"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n"));

    const LanguageFile language(ReadLanguageText(file.fileName()));
    const LanguageFile english(ReadLanguageText(QString(shippedFolder + u"en.dat"_s)));
    EXPECT_EQ(language.Missing(), QStringList());
    const auto compare = [&code](const QString& tag, const QString& text, const QString& model) {
        EXPECT_NE(text, u""_s) << tag.toStdString();
        EXPECT_EQ(text.count(u"[VAR1]"_s), model.count(u"[VAR1]"_s)) << tag.toStdString();
        EXPECT_FALSE(text.contains(u'<')) << tag.toStdString();
        EXPECT_FALSE(text.contains(QChar::ReplacementCharacter)) << tag.toStdString();
        EXPECT_EQ(text.endsWith(u' '), model.endsWith(u' ')) << tag.toStdString();
        // A long text that is the same as in English has been forgotten.
        if (code != u"en"_s && model.size() > 12) {
            EXPECT_NE(text, model) << tag.toStdString();
        }
    };
    for (int number = 1; number <= LanguageFile::LastMain; ++number)
        if (number != 11)
            compare(u"main%1"_s.arg(number), language.Main(number), english.Main(number));
    for (int number = 1; number <= LanguageFile::LastSettings; ++number)
        compare(u"settings%1"_s.arg(number), language.Settings(number), english.Settings(number));
    WindowTexts texts;
    const QString text = ReadLanguageText(file.fileName());
    texts.Load(text);
    for (int i = 0; i < static_cast<int>(WindowText::Count); ++i) {
        const auto slot = static_cast<WindowText>(i);
        EXPECT_TRUE(text.contains(u"<text-%1>"_s.arg(WindowTexts::Name(slot))))
            << WindowTexts::Name(slot).toStdString();
        compare(WindowTexts::Name(slot), texts.Text(slot), WindowTexts::English(slot));
        if (code == u"en"_s) {
            EXPECT_EQ(texts.Text(slot), WindowTexts::English(slot));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedLanguage, testing::Values("en", "fr", "es", "it"),
                         [](const auto& info) { return info.param; });

// What came with teaching is missing in the files of before; the rest stays in the language.
TEST(OlderLanguageFile, FallsBackToEnglishWhereItLacksTags) {
    QString text = ReadLanguageText(QString(shippedFolder + u"fr.dat"_s));
    const qsizetype teaching = text.indexOf(u"<text-Teach>"_s);
    ASSERT_GT(teaching, 0);
    text.truncate(teaching);
    WindowTexts texts;
    texts.Load(text);
    int french = 0;
    for (int i = 0; i < static_cast<int>(WindowText::Count); ++i) {
        const auto slot = static_cast<WindowText>(i);
        if (slot >= WindowText::Teach)
            EXPECT_EQ(texts.Text(slot), WindowTexts::English(slot));
        else
            french += texts.Text(slot) == WindowTexts::English(slot) ? 0 : 1;
    }
    EXPECT_GT(french, 30);
    EXPECT_NE(LanguageFile(text).Main(4), u"Get Data"_s);
}

TEST(English, HasTheBuiltInCaptions) {
    const LanguageFile english(ReadLanguageText(QString(shippedFolder + u"en.dat"_s)));
    EXPECT_EQ(english.ColumnCaptions(), EnglishCaptions());
    EXPECT_EQ(english.Main(4), u"Get Data"_s);
    EXPECT_EQ(english.Main(45), u"[VAR1] items listed"_s);
    EXPECT_EQ(english.Main(46), u"[VAR1] items exported"_s);
    // What a stopped harvest says too, and what fits the columns of the directories.
    const auto textOf = [](QStringView code) {
        return LanguageFile(ReadLanguageText(QString(shippedFolder + code + u".dat")));
    };
    EXPECT_EQ(textOf(u"it").Main(69), u"Estrazione terminata."_s);
    EXPECT_EQ(textOf(u"fr").Main(26), u"Province/État"_s);
    EXPECT_TRUE(textOf(u"fr").Main(63).endsWith(u"via le proxy"));
    EXPECT_EQ(textOf(u"es").Settings(17), u"Columnas para exportar:"_s);
    EXPECT_EQ(english.Settings(11), u"Use a random proxy from the following  list. Enter 1 proxy per line."_s);
}

} // namespace
} // namespace Brindle
