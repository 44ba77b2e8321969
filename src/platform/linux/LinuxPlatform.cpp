#include "CreatePlatform.h"

#include <QProcess>
#include <QStandardPaths>

namespace Brindle {

namespace {

class LinuxPlatform : public Platform {
public:
    QString GetDocumentsFolder() override {
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    }

    QString SettingsFolder() override {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/Norvane Software/Brindle";
    }

    bool OpenInDefaultBrowser(const QString& url) override {
        const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
        return !opener.isEmpty() && QProcess::startDetached(opener, {url});
    }

    void ClearUrlCache() override {} // the browser's own cache is the only one here

    QString BrowserEngineVersion() override { return QStringLiteral("0"); }

    void WriteUserRegistry(const QString&, const QString&, quint32) override {}
};

} // namespace

std::unique_ptr<Platform> CreatePlatform() {
    return std::make_unique<LinuxPlatform>();
}

} // namespace Brindle
