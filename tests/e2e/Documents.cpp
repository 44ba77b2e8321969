#include "Documents.h"

#include "CommandLine.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

namespace {

// Hands on each line of the documents, without indentation where it is code, and whether it is code.
void EachLine(const std::function<void(const QString& where, const QString& text, bool isCode)>& take) {
    for (const QString& fileName : Documents()) {
        const QStringList lines = QString::fromUtf8(FileContent(fileName)).split(u'\n');
        bool inBlock = false;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (lines[i].startsWith(u"```")) {
                inBlock = !inBlock;
                continue;
            }
            const QString where = QFileInfo(fileName).fileName() + u':' + QString::number(i + 1);
            QString text = lines[i];
            while (inBlock && text.endsWith(u'\\') && i + 1 < lines.size()) {
                text.chop(1);
                text += lines[++i];
            }
            const bool isCode = inBlock || text.startsWith(u"    ");
            take(where, isCode ? text.trimmed() : text, isCode);
        }
    }
}

} // namespace

QStringList Documents() {
    const QDir root(QStringLiteral(PROJECT_DIR));
    QStringList files{root.filePath(u"README.md"_s), root.filePath(u"CONTRIBUTING.md"_s)};
    for (const QFileInfo& file : QDir(root.filePath(u"docs"_s)).entryInfoList({u"*.md"_s}, QDir::Files, QDir::Name))
        files.append(file.filePath());
    return files;
}

std::vector<Written> LinesOfCodeBlocks() {
    static const QRegularExpression purpose(u"\\s+#\\s.*$"_s);
    std::vector<Written> commands;
    EachLine([&](const QString& where, QString text, bool isCode) {
        if (isCode && !text.isEmpty())
            commands.push_back({where, text.remove(purpose)});
    });
    return commands;
}

std::vector<Written> InlineCode() {
    static const QRegularExpression code(u"(?<!`)`([^`]+)`(?!`)"_s);
    std::vector<Written> commands;
    EachLine([&](const QString& where, const QString& text, bool isCode) {
        for (auto match = code.globalMatch(text); !isCode && match.hasNext();)
            // A bar has a backslash in a table.
            commands.push_back({where, match.next().captured(1).replace(u"\\|"_s, u"|"_s)});
    });
    return commands;
}

QStringList ArgumentsOf(const QString& text) {
    QStringList arguments;
    QString argument;
    QChar quote;
    bool inside = false;
    for (const QChar c : QString(text + u' ')) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            else
                argument += c;
        } else if (c == u'"' || c == u'\'') {
            quote = c;
            inside = true;
        } else if (c != u' ') {
            argument += c;
            inside = true;
        } else if (inside) {
            arguments.append(std::exchange(argument, QString()));
            inside = false;
        }
    }
    return arguments;
}

} // namespace Brindle::Test
