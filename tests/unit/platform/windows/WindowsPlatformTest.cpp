#include "PrintTo.h"
#include "platform/CreatePlatform.h"
#include "platform/TickCount.h"
#include "platform/windows/FileVersion.h"
#include "platform/windows/RegistryKey.h"
#include "platform/windows/WideText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <wininet.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString testKey = u"Software\\Norvane Software\\Brindle tests"_s;

// A key of the current user's that is gone after the test, with all below it.
class TestKey {
public:
    TestKey() { Remove(); }
    ~TestKey() { Remove(); }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

private:
    static void Remove() { RegDeleteTreeW(HKEY_CURRENT_USER, Wide(testKey)); }
};

DWORD NumberIn(const QString& key, const QString& name, DWORD* type) {
    DWORD value = 0;
    DWORD size = sizeof value;
    RegGetValueW(HKEY_CURRENT_USER, Wide(key), Wide(name), RRF_RT_ANY, type, &value, &size);
    return value;
}

void SetText(const QString& key, const wchar_t* name, DWORD type, const QString& text) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, Wide(key), name, type, text.utf16(),
                              static_cast<DWORD>((text.size() + 1) * 2)),
              ERROR_SUCCESS);
}

TEST(WindowsPlatform, WritesNumbersUnderNewKeysAndOverOldValues) {
    const TestKey cleanUp;
    const auto platform = CreatePlatform();
    const QString key = testKey + u"\\Main\\Feature"_s;
    for (const quint32 value : {11001u, 0u}) {
        platform->WriteUserRegistry(key, u"br\u00EDndle.exe"_s, value);
        DWORD type = 0;
        EXPECT_EQ(NumberIn(key, u"br\u00EDndle.exe"_s, &type), value);
        EXPECT_EQ(type, DWORD{REG_DWORD});
    }
    platform->WriteUserRegistry(QString(300, u'k'), u"x"_s, 1); // no key can be called so: nothing happens
}

TEST(RegistryKey, ReadsTextsOfBothKinds) {
    const TestKey cleanUp;
    SetText(testKey, nullptr, REG_SZ, u"\"C:\\fox.exe\" -url \"%1\""_s);
    SetText(testKey, L"expanded", REG_EXPAND_SZ, u"%SystemRoot%\\%SystemRoot%\\x"_s);
    const QString longText = QString(700, u'\u00E8') + u'x';
    SetText(testKey, L"empty", REG_SZ, QString());
    SetText(testKey, L"long", REG_SZ, longText);
    ASSERT_TRUE(RegistryKey::Create(HKEY_CURRENT_USER, testKey).Write(u"number"_s, 7));
    const RegistryKey key = RegistryKey::Open(HKEY_CURRENT_USER, testKey);
    EXPECT_EQ(key.Text(QString()), u"\"C:\\fox.exe\" -url \"%1\""_s);
    const QString root = qEnvironmentVariable("SystemRoot");
    ASSERT_FALSE(root.isEmpty());
    EXPECT_EQ(key.Text(u"expanded"_s), root + u'\\' + root + u"\\x"_s);
    EXPECT_EQ(key.Text(u"long"_s), longText);
    EXPECT_EQ(key.Text(u"empty"_s), QString());
    EXPECT_EQ(key.Text(u"number"_s), std::nullopt) << "no text";
    EXPECT_EQ(key.Text(u"none"_s), std::nullopt);
    const RegistryKey missing = RegistryKey::Open(HKEY_CURRENT_USER, testKey + u"\\none"_s);
    EXPECT_FALSE(missing.IsOpen());
    EXPECT_EQ(missing.Text(QString()), std::nullopt);
    EXPECT_FALSE(RegistryKey::Open(HKEY_CURRENT_USER, testKey + u"\\none"_s).IsOpen()) << "reading made it";
}

TEST(WindowsPlatform, TakesItsFoldersFromTheShell) {
    const auto platform = CreatePlatform();
    EXPECT_EQ(platform->SettingsFolder(), qEnvironmentVariable("APPDATA") + u"\\Norvane Software\\Brindle"_s);
    const QString documents = platform->GetDocumentsFolder();
    EXPECT_TRUE(QDir(documents).exists()) << documents.toStdString();
    EXPECT_TRUE(documents.contains(u'\\') && !documents.contains(u'/')) << documents.toStdString();
}

TEST(FileVersion, IsFourNumbersOrZero) {
    const QString system = qEnvironmentVariable("SystemRoot") + u"\\system32\\"_s;
    EXPECT_TRUE(
        QRegularExpression(u"^\\d+\\.\\d+\\.\\d+\\.\\d+$"_s).match(FileVersion(system + u"kernel32.dll"_s)).hasMatch())
        << FileVersion(system + u"kernel32.dll"_s).toStdString();
    const QTemporaryDir folder;
    const QString plain = folder.filePath(u"plain.exe"_s);
    ASSERT_TRUE(QFile(plain).open(QIODevice::WriteOnly));
    for (const QString& file : {QString(), plain, folder.filePath(u"none.exe"_s)})
        EXPECT_EQ(FileVersion(file), u"0"_s) << file.toStdString();
}

TEST(WindowsPlatform, TellsAVersionOfTheEngine) {
    const QString version = CreatePlatform()->BrowserEngineVersion();
    EXPECT_TRUE(QRegularExpression(u"^\\d+(\\.\\d+)*$"_s).match(version).hasMatch()) << version.toStdString();
}

// Puts a page into WinINet's cache.
bool Cache(const QString& address) {
    wchar_t file[MAX_PATH] = {};
    if (CreateUrlCacheEntryW(Wide(address), 4, L"htm", file, 0) == 0)
        return false;
    QFile page(QString::fromWCharArray(file));
    if (!page.open(QIODevice::WriteOnly) || page.write("page") != 4)
        return false;
    page.close();
    const FILETIME never{};
    return CommitUrlCacheEntryW(Wide(address), file, never, never, NORMAL_CACHE_ENTRY, nullptr, 0, nullptr, nullptr) !=
           0;
}

bool IsCached(const QString& address) {
    DWORD size = 0;
    return GetUrlCacheEntryInfoW(Wide(address), nullptr, &size) != 0 || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

TEST(WindowsPlatform, EmptiesTheUrlCache) {
    const auto platform = CreatePlatform();
    QStringList addresses;
    for (int i = 0; i < 20; ++i)
        addresses.append(u"http://directory.test/"_s + QString(i * 20, u'p') + QString::number(i));
    for (const QString& address : addresses) {
        ASSERT_TRUE(Cache(address)) << GetLastError();
        ASSERT_TRUE(IsCached(address));
    }
    platform->ClearUrlCache();
    for (const QString& address : addresses)
        EXPECT_FALSE(IsCached(address)) << address.toStdString();
    platform->ClearUrlCache(); // also when it is empty
}

TEST(SystemTickCount, IsTheSystems) {
    const DWORD before = GetTickCount();
    const quint32 ticks = SystemTickCount();
    EXPECT_LE(before, ticks);
    EXPECT_LE(ticks, GetTickCount());
}

} // namespace
} // namespace Brindle
