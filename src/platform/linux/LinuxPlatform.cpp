#include "platform/CreatePlatform.h"
#include "platform/OpenableAddress.h"

#include <QProcess>
#include <QStandardPaths>

namespace Brindle {

using namespace Qt::StringLiterals;

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
        // The opener would take anything else for a file, and opens files with whatever program they belong to.
        const QString address = OpenableAddress(url);
        const QString opener = QStandardPaths::findExecutable(u"xdg-open"_s);
        return !address.isEmpty() && !opener.isEmpty() && QProcess::startDetached(opener, {address});
    }

    void ClearUrlCache() override {} // the browser's own cache is the only one here

    QString BrowserEngineVersion() override { return u"0"_s; }

    void WriteUserRegistry(const QString&, const QString&, quint32) override {}
};

} // namespace

std::unique_ptr<Platform> CreatePlatform() {
    return std::make_unique<LinuxPlatform>();
}

} // namespace Brindle
