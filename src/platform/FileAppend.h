#pragma once

#include <QByteArray>
#include <QString>

namespace Brindle {

/// What became of an append.
struct AppendResult {
    enum class Kind { Done, Missing, Exists, Failed } Outcome = Kind::Done;
    QString Reason; ///< the system's, of a failure
};

/// Appends the bytes to a file that exists by one write, so what several programs append never mixes. `Missing` when
/// there is no such file. After a failure the file ends as before.
AppendResult AppendToFile(const QString& fileName, const QByteArray& bytes);

/// Makes a new file that holds the bytes. `Exists` when there is one of that name, which is then left alone. No other
/// program can append before these bytes stand in it; after a failure there is no file.
AppendResult MakeFile(const QString& fileName, const QByteArray& bytes);

} // namespace Brindle
