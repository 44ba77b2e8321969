#include "ui/ProgramOptions.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

#ifdef BRINDLE_HAS_IE
constexpr auto webEngine = u"Windows' web browser control (default where Windows has\n"
                           u"                         a page engine for it)";
#else
constexpr auto webEngine = u"the Chromium engine (default where it is built in)";
#endif

} // namespace

ProgramOptions ParseProgramOptions(const QStringList& arguments) {
    ProgramOptions options;
    qsizetype at = 0;
    const auto value = [&] {
        if (at + 1 >= arguments.size())
            throw OptionError(arguments[at] + u": a value is missing"_s);
        return arguments[++at];
    };
    for (; at < arguments.size(); ++at) {
        const QString& name = arguments[at];
        if (name == u"--demo") {
            options.OnDemo = true;
        } else if (name == u"--diagnose") {
            continue; // the caller looks for it before there is a display
        } else if (name == u"--sites") {
            options.SitesFileName = value();
        } else if (name == u"--settings") {
            options.SettingsFileName = value();
        } else if (name == u"--browser") {
            const QString engine = value();
            if (engine != u"static" && engine != u"web")
                throw OptionError(u"--browser: \u201C%1\u201D is neither static nor web"_s.arg(engine));
            options.Browser = engine == u"web" ? ProgramOptions::Engine::Web : ProgramOptions::Engine::Static;
        } else if (name == u"--pace") {
            const QString pace = value();
            bool isNumber = false;
            options.Pace = pace.toDouble(&isNumber);
            if (!isNumber || !(options.Pace >= 0 && options.Pace <= 1))
                throw OptionError(u"--pace: \u201C%1\u201D is no number from 0 to 1"_s.arg(pace));
        } else {
            throw OptionError(u"unknown option \u201C%1\u201D; brindle --help lists them"_s.arg(name));
        }
    }
    if (options.OnDemo && !options.SitesFileName.isEmpty())
        throw OptionError(u"--demo and --sites exclude each other"_s);
    return options;
}

QString ProgramHelp() {
    return u"Usage: brindle [options]\n"
           "Turns online business directories into sales leads.\n"
           "\n"
           "  --demo                 open the window on invented directories served by the program itself\n"
           "  --sites FILE           deployment file; default: the one that came with the program\n"
           "  --settings FILE        settings file instead of the user's\n"
           "  --browser static|web   web: %1;\n"
           "                         static: pages without scripts, shown as text\n"
           "  --pace N               every wait times N, 0 to 1; default 1\n"
           "  --diagnose             print versions, folders, engine, store and what is wrong, for a report\n"
           "  --version              print the version\n"
           "  --help                 print this text\n"_s.arg(QString::fromUtf16(webEngine));
}

} // namespace Brindle
