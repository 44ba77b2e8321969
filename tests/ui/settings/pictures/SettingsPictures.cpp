#include "DialogBench.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

// Both pages of the settings dialog in every language, as PNG files.
int main(int argc, char** argv) {
    using namespace Brindle;
#ifndef Q_OS_WIN // which has no other platform than its own
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    QApplication app(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1, QStringLiteral(".")));
    for (const QString& code :
         {QStringLiteral("en"), QStringLiteral("fr"), QStringLiteral("es"), QStringLiteral("it")}) {
        const LanguageFile language(
            ReadLanguageText(QStringLiteral(PROJECT_DIR "/languages/") + code + QStringLiteral(".dat")));
        Settings settings;
        settings.rUseProxy = true;
        settings.rAuthentification = true;
        settings.eHost = QStringLiteral("proxy.example");
        settings.eUserName = QStringLiteral("ada");
        settings.ePassword = QStringLiteral("secret");
        settings.cExportAutomatic = true;
        settings.eExportFolder = QStringLiteral("/home/ada/Documents");
        Test::DialogBench bench(settings, language.ColumnCaptions());
        bench.Dialog.show();
        bench.Dialog.ApplyLanguage(language);
        auto* const pages = bench.Control<QTabWidget>("pgcSettings");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            QCoreApplication::processEvents();
            const QString name = folder.filePath(QStringLiteral("settings-%1-%2.png").arg(code).arg(page + 1));
            if (!bench.Dialog.grab().save(name)) {
                std::fprintf(stderr, "cannot write %s\n", qPrintable(name));
                return 1;
            }
        }
    }
    return 0;
}
