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

    using namespace Qt::StringLiterals;
    QApplication app(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1, u"."_s));
    for (const QString& code : {u"en"_s, u"fr"_s, u"es"_s, u"it"_s}) {
        const QString language = ReadLanguageText(QStringLiteral(PROJECT_DIR "/languages/") + code + u".dat"_s);
        Settings settings;
        settings.rUseProxy = true;
        settings.rAuthentification = true;
        settings.eHost = u"proxy.example"_s;
        settings.eUserName = u"ada"_s;
        settings.ePassword = u"secret"_s;
        settings.cExportAutomatic = true;
        settings.eExportFolder = u"/home/ada/Documents"_s;
        Test::DialogBench bench(settings, LanguageFile(language).ColumnCaptions());
        bench.Dialog.show();
        bench.Dialog.ApplyLanguageText(language);
        auto* const pages = bench.Control<QTabWidget>("pgcSettings");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            QCoreApplication::processEvents();
            const QString name = folder.filePath(u"settings-%1-%2.png"_s.arg(code).arg(page + 1));
            if (!bench.Dialog.grab().save(name)) {
                std::fprintf(stderr, "cannot write %s\n", qPrintable(name));
                return 1;
            }
        }
    }
    return 0;
}
