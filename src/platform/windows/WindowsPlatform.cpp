#include "BrowserCommand.h"
#include "CreatePlatform.h"
#include "FileVersion.h"
#include "RegistryKey.h"
#include "Text.h"
#include "UrlCache.h"
#include "WideText.h"

#include <array>
#include <shellapi.h>
#include <shlobj.h>

namespace Brindle {

namespace {

constexpr int documents = CSIDL_PERSONAL; // 5
constexpr int applicationData = CSIDL_APPDATA;

// One of the user's folders; empty when the system names none.
QString SpecialFolder(int id) {
    std::array<wchar_t, 1001> path{};
    if (SHGetSpecialFolderPathW(nullptr, path.data(), id, FALSE) == FALSE)
        return {};
    return QString::fromWCharArray(path.data());
}

QString OrZero(const QString& version) {
    return version.isEmpty() ? QStringLiteral("0") : version;
}

class WindowsPlatform : public Platform {
public:
    QString GetDocumentsFolder() override { return SpecialFolder(documents); }

    QString SettingsFolder() override {
        QString folder = SpecialFolder(applicationData) + QStringLiteral("\\Norvane Software\\Brindle");
        ReplaceAll(folder, u"\\\\", u"\\");
        return folder;
    }

    bool OpenInDefaultBrowser(const QString& url) override {
        const QString command =
            RegistryKey::Open(HKEY_CLASSES_ROOT, QStringLiteral("http\\shell\\open\\command")).Text(QString());
        if (command.isEmpty())
            return false;
        const QString program = BrowserProgram(command);
        ShellExecuteW(nullptr, L"open", Wide(program), Wide(url), nullptr, SW_SHOW);
        return true;
    }

    void ClearUrlCache() override { ClearWinInetCache(); }

    // What the engine says of itself; then what its program carries; then what the system was told at set-up, which
    // newer engines leave at 9.11 for old callers' sake.
    QString BrowserEngineVersion() override {
        const QString engine = QStringLiteral("Software\\Microsoft\\Internet Explorer");
        QString version = OrZero(RegistryKey::Open(HKEY_LOCAL_MACHINE, engine).Text(QStringLiteral("svcVersion")));
        if (version == u"0")
            version = FileVersion(EngineExecutable(
                RegistryKey::Open(HKEY_CLASSES_ROOT, QStringLiteral("Applications\\iexplore.exe\\shell\\open\\command"))
                    .Text(QString())));
        if (version == u"0")
            version = OrZero(RegistryKey::Open(HKEY_LOCAL_MACHINE, engine).Text(QStringLiteral("Version")));
        return version;
    }

    void WriteUserRegistry(const QString& key, const QString& name, quint32 value) override {
        RegistryKey::Create(HKEY_CURRENT_USER, key).Write(name, value);
    }
};

} // namespace

std::unique_ptr<Platform> CreatePlatform() {
    return std::make_unique<WindowsPlatform>();
}

} // namespace Brindle
