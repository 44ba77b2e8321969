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

const QString unknown = QStringLiteral("0");

// A text of the registry; what stands for it where there is none.
QString RegistryText(HKEY root, const QString& key, const QString& name, const QString& otherwise) {
    return RegistryKey::Open(root, key).Text(name).value_or(otherwise);
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
        const QString command = RegistryText(HKEY_CLASSES_ROOT, QStringLiteral("http\\shell\\open\\command"), {}, {});
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
        QString version = RegistryText(HKEY_LOCAL_MACHINE, engine, QStringLiteral("svcVersion"), unknown);
        if (version == unknown)
            version = FileVersion(EngineExecutable(RegistryText(
                HKEY_CLASSES_ROOT, QStringLiteral("Applications\\iexplore.exe\\shell\\open\\command"), {}, {})));
        if (version == unknown)
            version = RegistryText(HKEY_LOCAL_MACHINE, engine, QStringLiteral("Version"), unknown);
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
