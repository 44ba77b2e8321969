#include "ui/QtTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

void QtTranslations::Load(const QString& code) {
    QCoreApplication::removeTranslator(&translator_);
    const QString name = u"qtbase_"_s + code;
    if (translator_.load(name, QCoreApplication::applicationDirPath() + u"/translations"_s) ||
        translator_.load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator_);
}

} // namespace Brindle
