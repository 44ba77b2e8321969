#pragma once

#include <QString>
#include <QStringList>

namespace Brindle {

/// The user's options. Each field is named as its element in the settings file.
struct Settings {
    bool rNoProxy = true;
    bool rUseProxy = false;
    bool rAuthentification = false;
    QString eHost;
    QString ePort = QStringLiteral("80");
    QString eUserName;
    QString ePassword;
    bool rRandomProxy = false;
    QStringList eRandomProxies; ///< host:port or host:port:user:password each
    QString eExportFields = QStringLiteral("0,1,2,3,4,5,6,7,8,9,10,11,12,13");
    QString eRandom = QStringLiteral("3"); ///< upper bound in seconds of the random delay before a request
    bool cExtractEmails = false;
    bool cExportManually = true;
    bool cExportAutomatic = false;
    QString eExportFolder; ///< the documents folder unless chosen otherwise
    QString eDelimiter = QStringLiteral(",");
    QString Language = QStringLiteral("en");

    bool operator==(const Settings&) const = default;
};

} // namespace Brindle
