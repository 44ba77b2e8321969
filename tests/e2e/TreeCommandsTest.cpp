#include "CommandLine.h"
#include "Documents.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <set>

// What the documents tell their reader to start beside brindle-cli: scripts of the tree, CMake, what a build makes.

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// What is not run here, and why; it is there, can be run, and knows the options that are named.
struct NotRun {
    const char* Program;
    const char* Why;
};
constexpr NotRun notRun[]{
    {"git", "the reader's own copy"},
    {"./run", "builds the tree that this is a test of"},
    {"./test", "runs this test; that its patterns choose tests is looked at in DocumentsTest"},
    {".ci/run", "runs this test"},
    {"scripts/setup-debian", "installs packages; ./run and ./test begin with it"},
    {"scripts/check", "up to an hour; ./test --all"},
    {"scripts/release", "a release; without a version it is run below"},
    {"scripts/simulate-workers", "minutes, with a server of its own"},
    {"fuzz/run", "builds all with another compiler; ./test --all"},
    {"packaging/debian/build", "builds all once more; ./test --all"},
    {"packaging/debian/test", "root and a fresh Debian; ./test --all"},
    {"packaging/scale/try", "root and a cluster of its own"},
    {"packaging/windows/build", "another compiler, libraries for half an hour"},
    {"packaging/windows/libraries", "half an hour"},
    {"packaging/windows/test", "half an hour, takes wine"},
    {"bench/export-against-python", "a measurement"},
    {"bench/growth", "a measurement"},
    {"bench/growth-per-listing", "a measurement"},
    {"bench/harvest-with-store", "a measurement"},
    {"bench/page-against-gumbo", "a measurement"},
    {"bench/phones-against-python", "a measurement"},
    {"bench/start-and-as-is", "a measurement"},
    {"bench/structured-against-extruct", "a measurement"},
};

struct Command {
    Written As;
    QString Program;
    QStringList Arguments;
};

// The commands among what is set as code, without assignments in front of them.
std::vector<Command> TreeCommands() {
    static const QRegularExpression program(
        u"^(?:git|cmake|ctest|brindle|\\./run|\\./test|\\.ci/run|(?:scripts|fuzz|bench|packaging/\\w+|build/(?:bench|tests))/[\\w.-]+)$"_s);
    static const QRegularExpression assignment(u"^[A-Z_]+=\\S*$"_s);
    std::vector<Written> code = LinesOfCodeBlocks();
    std::ranges::copy(InlineCode(), std::back_inserter(code));
    std::vector<Command> commands;
    for (const Written& line : code) {
        QString text = line.Text;
        for (const QString& part : text.split(u" && "_s)) {
            QStringList words = ArgumentsOf(part);
            while (!words.isEmpty() && assignment.match(words.first()).hasMatch())
                words.removeFirst();
            // A bare name of a system's program is no command.
            if (words.isEmpty() || !program.match(words.first()).hasMatch() ||
                (words.size() == 1 && !words.first().contains(u'/')))
                continue;
            const QString first = words.takeFirst();
            // Nor is a source, or a file that is not for starting.
            if (!QRegularExpression(u"\\.(?:cpp|h|sh|yaml|slurm|service)$"_s).match(first).hasMatch())
                commands.push_back({line, first, words});
        }
    }
    return commands;
}

const QDir& Tree() {
    static const QDir tree(QStringLiteral(PROJECT_DIR));
    return tree;
}

// The output, when the program ends well within the time.
std::optional<QString> OutputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = CliEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(Tree().path());
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList OptionsOf(const Command& command) {
    static const QRegularExpression option(u"--?[A-Za-z][\\w-]*"_s);
    QStringList options;
    for (const QString& word : command.Arguments)
        if (const auto match = option.match(word); match.hasMatch() && match.capturedStart() < 2)
            options.append(match.captured());
    return options;
}

// What is wrong with a command; empty when it does what it is there for.
QString FaultOf(const Command& command) {
    if (command.Program == u"cmake" || command.Program == u"ctest") {
        for (const QString& word : command.Arguments)
            if (word.startsWith(u"-DBRINDLE_") &&
                !FileContent(Tree().filePath(u"CMakeLists.txt"_s)).contains(word.mid(2).section(u'=', 0, 0).toUtf8()))
                return u"no such option of the build: "_s + word;
        const qsizetype preset = command.Arguments.indexOf(u"--preset"_s);
        if (preset >= 0) {
            const bool tests = command.Program == u"ctest";
            const QString name = command.Arguments.value(preset + 1);
            const std::optional<QString> presets =
                OutputOf(u"cmake"_s, {tests ? u"--list-presets=test"_s : u"--list-presets"_s});
            return presets && presets->contains(u'"' + name + u'"') ? QString() : u"there is no preset "_s + name;
        }
        // What such a preset has made is built and installed by the packages.
        return command.Arguments.value(0) == u"--build" || command.Arguments.value(0) == u"--install"
                   ? QString()
                   : u"not known here"_s;
    }
    if (command.Program == u"brindle") {
        const QString program = QFileInfo(CliProgram()).dir().filePath(u"brindle"_s);
        if (!QFileInfo::exists(program))
            return {}; // this build has no window
        const std::optional<QString> help = OutputOf(program, {u"--help"_s});
        for (const QString& option : OptionsOf(command))
            if (!help || !help->contains(option))
                return u"--help does not know "_s + option;
        return command.Arguments != QStringList(u"--diagnose"_s) || OutputOf(program, command.Arguments)
                   ? QString()
                   : u"it fails"_s;
    }
    if (command.Program.startsWith(u"build/")) {
        const QString name = command.Program.section(u'/', -1);
        const QString program = QFileInfo(CliProgram()).dir().filePath(u"../"_s + command.Program.section(u'/', 1));
        if (!QFileInfo::exists(program)) { // benches may be left out
            const QString made = name.startsWith(u"bench_") ? u"brindle_bench("_s + name.mid(6) : u"("_s + name;
            QDirIterator lists(Tree().filePath(command.Program.section(u'/', 1, 1)), {u"CMakeLists.txt"_s}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (lists.hasNext())
                if (QString::fromUtf8(FileContent(lists.next())).contains(made, Qt::CaseInsensitive))
                    return {};
            return u"no build makes it"_s;
        }
        if (!name.startsWith(u"bench_"))
            return {};
        const std::optional<QString> benches =
            OutputOf(program, command.Arguments + QStringList{u"--benchmark_list_tests"_s});
        return benches && !benches->trimmed().isEmpty() ? QString() : u"it has no such benchmark"_s;
    }
    if (command.Program == u"git")
        return {};
    const QFileInfo script(Tree().filePath(command.Program));
    if (!script.isFile() || !script.isExecutable())
        return u"it is not there, or cannot be started"_s;
    const QByteArray content = FileContent(script.filePath());
    if (content.startsWith("#!/bin/bash") && !OutputOf(u"/bin/bash"_s, {u"-n"_s, script.filePath()}))
        return u"bash cannot read it"_s;
    for (const QString& option : OptionsOf(command))
        if (command.Program != u"./test" || option == u"--all") // others are those of ctest
            if (!content.contains(option.toUtf8()))
                return u"it does not know "_s + option;
    return {};
}

TEST(TreeCommands, AreRunOrAreKnownToTakeTooMuch) {
    const QStringList run{u"cmake"_s, u"ctest"_s, u"brindle"_s, u"scripts/third-party"_s};
    std::set<QString> seen;
    for (const Command& command : TreeCommands()) {
        const std::string where = command.As.Where.toStdString() + ": " + command.As.Text.toStdString();
        seen.insert(command.Program);
        EXPECT_TRUE(run.contains(command.Program) || command.Program.startsWith(u"build/") ||
                    std::ranges::any_of(
                        notRun, [&](const NotRun& each) { return command.Program == QLatin1StringView(each.Program); }))
            << where << ": neither run nor in the list of what is not";
        EXPECT_EQ(FaultOf(command).toStdString(), "") << where;
    }
    for (const NotRun& each : notRun)
        EXPECT_TRUE(seen.contains(QLatin1StringView(each.Program))) << "no document names " << each.Program;
}

// The short way of what is long.
TEST(TreeCommands, ShortOnes) {
    const auto status = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.setWorkingDirectory(Tree().path());
        process.start(Tree().filePath(program), arguments, QIODevice::ReadOnly);
        return process.waitForFinished(60'000) ? process.exitCode() : -1;
    };
    EXPECT_EQ(status(u"scripts/release"_s, {}), 2);
    EXPECT_EQ(status(u"scripts/release"_s, {u"one"_s}), 2);
    EXPECT_EQ(status(u"scripts/check"_s, {u"everything"_s}), 2);
    EXPECT_EQ(status(u"packaging/debian/build"_s, {u"--everything"_s}), 2);
    EXPECT_EQ(status(u"./test"_s, {u"--all"_s, u"more"_s}), 2);
    EXPECT_EQ(status(u"scripts/third-party"_s, {u"--packages"_s}), 0);
    const QByteArray checks = FileContent(Tree().filePath(u"scripts/check"_s));
    for (const Command& command : TreeCommands())
        for (const QString& name : command.Program == u"scripts/check" ? command.Arguments : QStringList())
            EXPECT_TRUE(checks.contains(QByteArray("check_" + name.toUtf8() + "()"))) << name.toStdString();
}

} // namespace
} // namespace Brindle::Test
