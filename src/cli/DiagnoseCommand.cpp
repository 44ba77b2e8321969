#include "adapters/Adapters.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "platform/CreatePlatform.h"
#include "platform/Programs.h"
#include "workbench/Diagnose.h"

#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

int RunDiagnose(const CommandLine& line) {
    const std::unique_ptr<Platform> system = CreatePlatform();
    const bool hasEngine = QFileInfo::exists(ProgramBeside(u"brindle-cli-web"_s));
    const QString report = Diagnose({.System = *system,
                                     .SitesFileName = line.SitesFileName.value_or(QString()),
                                     .SettingsFileName = line.SettingsFileName.value_or(QString()),
                                     .Store = line.Store,
                                     .Engine = hasEngine ? u"Chromium (--browser web)"_s : u"none: static pages only"_s,
                                     .WhyNoSandbox = hasEngine ? std::optional(WhyNoSandbox()) : std::nullopt,
                                     .Directories = SiteAdapters()});
    WriteToStandardOutput(report.toLocal8Bit());
    return ExitStatus::Done;
}

} // namespace Brindle
