#pragma once

#include "i18n/WindowTexts.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace Brindle {

/// What is known of a directory beside its pages.
struct AboutDirectory {
    QString Country; ///< as in a recipe
    QString Search;  ///< as in a recipe
    QString Address; ///< of a page of results
};

/// Asks for the country of a directory that is taught, and for the address of its searches: typed, or made of the words
/// that somebody searched for.
class TfrmAboutDirectory : public QDialog {
    Q_OBJECT

public:
    TfrmAboutDirectory(const AboutDirectory& about, const WindowTexts& texts, QWidget* parent = nullptr);

    QString Country() const { return country_->currentData().toString(); }
    QString Search() const { return search_->text().trimmed(); }

private:
    void OfferCountries(const QString& chosen);
    void MakeSearch();
    void Check();

    const QString address_;
    const WindowTexts texts_;
    QComboBox* country_;
    QLineEdit* search_;
    QLineEdit* what_;
    QLineEdit* where_;
    QLabel* verdict_;
    QPushButton* take_;
};

} // namespace Brindle
