#include "CommandLine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

namespace {

// Processes are watched by an application's event dispatcher.
class ApplicationEnvironment : public testing::Environment {
public:
    void SetUp() override { application_ = std::make_unique<QCoreApplication>(count_, arguments_); }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[9] = "test_e2e";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QCoreApplication> application_;
};

[[maybe_unused]] testing::Environment* const applicationEnvironment =
    testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

} // namespace

QString CliProgram() {
    return QStringLiteral(BRINDLE_CLI);
}

QProcessEnvironment CliEnvironment() {
    static const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(QString::fromLatin1(name), home.path());
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    return environment;
}

Outcome RunCli(const QStringList& arguments, int limitMs) {
    QProcess process;
    process.setProcessEnvironment(CliEnvironment());
    QElapsedTimer timer;
    timer.start();
    process.start(CliProgram(), arguments, QIODevice::ReadOnly);
    Outcome outcome;
    if (process.waitForFinished(limitMs)) {
        if (process.exitStatus() == QProcess::NormalExit)
            outcome.Status = process.exitCode();
    } else {
        process.kill();
        process.waitForFinished(5000);
    }
    outcome.Milliseconds = timer.elapsed();
    outcome.Out = process.readAllStandardOutput();
    outcome.Err = process.readAllStandardError();
    return outcome;
}

std::vector<Lead> LeadsOfJsonl(const QByteArray& text) {
    std::vector<Lead> leads;
    if (!text.isEmpty() && !text.endsWith('\n'))
        throw std::runtime_error("the last line has no end");
    for (const QByteArray& line : text.split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        if (object.size() != FieldCount)
            throw std::runtime_error("not fourteen fields: " + line.toStdString());
        Lead& lead = leads.emplace_back();
        qsizetype at = 0;
        for (int column = 0; column < FieldCount; ++column) {
            const QString key = EnglishCaptions().at(column);
            if (!object.value(key).isString())
                throw std::runtime_error("no text for " + key.toStdString() + ": " + line.toStdString());
            lead.At(column) = object.value(key).toString();
            const QByteArray quoted = '"' + key.toUtf8() + '"';
            at = line.indexOf(quoted, at);
            if (at < 0)
                throw std::runtime_error("out of order, " + key.toStdString() + ": " + line.toStdString());
        }
    }
    return leads;
}

QByteArray CsvOf(const std::vector<Lead>& leads, char delimiter) {
    const QString separator = u'"' + QString(QLatin1Char(delimiter)) + u'"';
    QString text = u'"' + EnglishCaptions().join(separator) + u"\"\r\n";
    for (const Lead& lead : leads) {
        QStringList fields;
        for (int column = 0; column < FieldCount; ++column)
            fields.append(lead.At(column));
        text += u'"' + fields.join(separator) + u"\"\r\n";
    }
    return text.toLocal8Bit();
}

QByteArray FileContent(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(fileName.toStdString() + ": " + file.errorString().toStdString());
    return file.readAll();
}

} // namespace Brindle::Test
