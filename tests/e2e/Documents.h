#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle::Test {

/// A command as a document gives it to its reader.
struct Written {
    QString Where; ///< file and line
    QString Text;  ///< without what it is for, which stands behind a "#"
};

/// The documents of the tree: README, CONTRIBUTING and those of docs/.
QStringList Documents();

/// The lines of all code blocks of the documents, fenced or indented ones; a line that a backslash goes on with is one.
std::vector<Written> LinesOfCodeBlocks();

/// What stands between single backticks in the text around the code blocks.
std::vector<Written> InlineCode();

/// A command's words, as a shell takes them apart: blanks, and quotes of both kinds.
QStringList ArgumentsOf(const QString& text);

} // namespace Brindle::Test
