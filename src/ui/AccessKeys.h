#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QList>
#include <QShortcut>

namespace Brindle {

/// Gives the buttons and labelled controls of a window their access keys: Alt and a letter of the caption, which differ
/// from each other. Captions come from language files and change at run time, so the letters are chosen anew each time;
/// they are named in the tooltips. A letter that a caption asks for itself with "&" is left to it.
class AccessKeys {
public:
    /// `reserved`: letters that the window uses otherwise.
    explicit AccessKeys(QString reserved) : reserved_(std::move(reserved)) {}

    void Add(QAbstractButton* button) { buttons_.append(button); }
    /// The key leads to the label's control.
    void Add(QLabel* label, QWidget* control);
    /// What the tooltip of a button says below its caption, from the next `Assign` on.
    static void SetHint(QAbstractButton* button, const QString& hint);
    /// To be called whenever captions have changed.
    void Assign();

private:
    struct Labelled {
        QLabel* Label;
        QWidget* Control;
        QShortcut* Key;
    };
    QString reserved_;
    QList<Labelled> labels_;
    QList<QAbstractButton*> buttons_;
};

/// The caption of a label as the name of its control.
QString WithoutColon(const QString& caption);

/// A letter, A to Z, that is not in `taken`, which it then joins: the first of the caption if possible, otherwise any;
/// null for an empty caption or when none is left.
QChar TakeAccessKey(const QString& caption, QString& taken);

} // namespace Brindle
