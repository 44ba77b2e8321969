#include "ui/MessageBoxDialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A dialog of the window that is open must not cover the question.
QWidget* Topmost(QWidget* window) {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal ? modal : window;
}

// Texts come from language files, names of files and answers of servers: none of them is markup.
int Ask(QWidget* parent, QMessageBox::Icon icon, const QString& text, QMessageBox::StandardButtons buttons) {
    parent = Topmost(parent);
    QMessageBox box(icon, parent ? parent->windowTitle() : QString(), text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    return box.exec();
}

} // namespace

bool MessageBoxDialogs::Confirm(const QString& text) {
    return !loop_.Quitting() &&
           Ask(parent_, QMessageBox::Warning, text, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

void MessageBoxDialogs::Inform(const QString& text) {
    if (!loop_.Quitting())
        Ask(parent_, QMessageBox::Information, text, QMessageBox::Ok);
}

void MessageBoxDialogs::Warn(const QString& text) {
    if (!loop_.Quitting())
        Ask(parent_, QMessageBox::Warning, text, QMessageBox::Ok);
}

ChosenFile MessageBoxDialogs::AskSaveFile(const QString& title, const QString& folder, const QStringList& types) {
    if (loop_.Quitting())
        return {};
    QFileDialog dialog(Topmost(parent_), title, folder);
    dialog.setNameFilters(types);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // A name without a suffix gets that of the type that is chosen last.
    const auto useSuffix = [&dialog](const QString& type) {
        dialog.setDefaultSuffix(type.section(u"(*."_s, -1).section(u')', 0, 0));
    };
    useSuffix(types.value(0));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, useSuffix);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const auto type = static_cast<int>(types.indexOf(dialog.selectedNameFilter()));
    return {dialog.selectedFiles().value(0), std::max(type, 0)};
}

QString MessageBoxDialogs::AskFolder(const QString& title, const QString& folder) {
    return loop_.Quitting() ? QString() : QFileDialog::getExistingDirectory(Topmost(parent_), title, folder);
}

} // namespace Brindle
