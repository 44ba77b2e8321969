#include "settings/OptionsFile.h"

#include "core/Errors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Brindle;
using namespace Qt::StringLiterals;

namespace {

class OptionsFileTest : public testing::Test {
protected:
    QString FileName() const { return folder_.filePath(u"deep/options.toml"_s); }
    void Write(const QByteArray& text) const {
        QDir().mkpath(folder_.filePath(u"deep"_s));
        QFile file(FileName());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray Content(const QString& fileName) const {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    MoreOptions Load() {
        problems_.clear();
        return OptionsFile(FileName()).Load(problems_);
    }
    QTemporaryDir folder_;
    QStringList problems_;
};

} // namespace

TEST_F(OptionsFileTest, WhatIsSavedIsRead) {
    EXPECT_EQ(Load(), MoreOptions());
    EXPECT_TRUE(problems_.isEmpty());
    MoreOptions options;
    for (const QString& key : MoreOptionKeys()) {
        QString reason;
        EXPECT_TRUE(SetMoreOption(options, key,
                                  key.startsWith(u"work."_s) ? u"17"_s
                                  : key == u"store.keep"     ? u"0"_s
                                                             : u"true"_s,
                                  reason))
            << reason.toStdString();
    }
    options.StoreTarget = u"C:\\Leads \"of\" ö\n"_s;
    OptionsFile(FileName()).Save(options);
    EXPECT_EQ(Load(), options);
    EXPECT_TRUE(problems_.isEmpty());
}

TEST_F(OptionsFileTest, UnknownKeysStay) {
    Write("[store]\nkeep = false\ncompression = 3\n[future]\nlist = [1, 2]\n");
    MoreOptions options = Load();
    EXPECT_FALSE(options.StoreKeep);
    EXPECT_TRUE(problems_.isEmpty());
    options.StoreKeep = true;
    OptionsFile(FileName()).Save(options);
    const QByteArray text = Content(FileName());
    EXPECT_TRUE(text.contains("compression = 3")) << text.constData();
    EXPECT_TRUE(text.contains("list = [ 1, 2 ]")) << text.constData();
    EXPECT_EQ(Load(), options);
}

TEST_F(OptionsFileTest, DamageGivesDefaultsAndOneLine) {
    const struct {
        QByteArray Text;
        QString Named;
    } cases[] = {
        {"[store\nkeep = false\n", u"line 1"_s},
        {"[store]\nkeep = 3\n", u"store.keep"_s},
        {QByteArray("\xff\xfe\0rubbish", 10), u"options.toml"_s},
        {QByteArray(2 << 20, '#'), u"too large"_s},
    };
    for (const auto& [text, named] : cases) {
        Write(text);
        EXPECT_EQ(Load(), MoreOptions());
        ASSERT_EQ(problems_.size(), 1);
        EXPECT_TRUE(problems_[0].contains(named)) << problems_[0].toStdString();
        EXPECT_TRUE(problems_[0].contains(u"options.toml"));
    }
    // The damaged text is not lost when the options are saved.
    Write("[store\nkeep = false\n");
    OptionsFile(FileName()).Save(MoreOptions());
    EXPECT_EQ(Content(FileName() + u".damaged"_s), "[store\nkeep = false\n");
    Load();
    EXPECT_TRUE(problems_.isEmpty());
}

TEST_F(OptionsFileTest, OverridesThatAreNone) {
    MoreOptions options;
    QString reason;
    EXPECT_FALSE(SetMoreOption(options, u"store.keep"_s, u"maybe"_s, reason));
    EXPECT_TRUE(reason.contains(u"maybe"));
    EXPECT_FALSE(SetMoreOption(options, u"store.nothing"_s, u"1"_s, reason));
    EXPECT_TRUE(reason.contains(u"store.nothing"));
    EXPECT_FALSE(SetMoreOption(options, u"work.lease_seconds"_s, u"0"_s, reason));
    EXPECT_TRUE(reason.contains(u"from 2 to")) << reason.toStdString();
    EXPECT_EQ(options, MoreOptions());
}
