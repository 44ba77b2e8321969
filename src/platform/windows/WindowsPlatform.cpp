#include "platform/BrowserCommand.h"
#include "platform/CreatePlatform.h"
#include "platform/windows/FileVersion.h"
#include "platform/windows/RegistryKey.h"
#include "platform/windows/UrlCache.h"
#include "platform/windows/WideText.h"
#include "toolkit/Text.h"

#include <array>
#include <shellapi.h>
#include <shlobj.h>

namespace Brindle {

using namespace Qt::StringLiterals;

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

const QString unknown = u"0"_s;

// A text of the registry; what stands for it where there is none.
QString RegistryText(HKEY root, const QString& key, const QString& name, const QString& otherwise) {
    return RegistryKey::Open(root, key).Text(name).value_or(otherwise);
}

class WindowsPlatform : public Platform {
public:
    QString GetDocumentsFolder() override { return SpecialFolder(documents); }

    QString SettingsFolder() override {
        QString folder = SpecialFolder(applicationData) + u"\\Norvane Software\\Brindle"_s;
        ReplaceAll(folder, u"\\\\", u"\\");
        return folder;
    }

    bool OpenInDefaultBrowser(const QString& url) override {
        const QString command = RegistryText(HKEY_CLASSES_ROOT, u"http\\shell\\open\\command"_s, {}, {});
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
        const QString engine = u"Software\\Microsoft\\Internet Explorer"_s;
        QString version = RegistryText(HKEY_LOCAL_MACHINE, engine, u"svcVersion"_s, unknown);
        if (version == unknown)
            version = FileVersion(EngineExecutable(
                RegistryText(HKEY_CLASSES_ROOT, u"Applications\\iexplore.exe\\shell\\open\\command"_s, {}, {})));
        if (version == unknown)
            version = RegistryText(HKEY_LOCAL_MACHINE, engine, u"Version"_s, unknown);
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
