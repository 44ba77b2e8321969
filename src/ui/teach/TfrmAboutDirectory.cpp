#include "ui/teach/TfrmAboutDirectory.h"

#include "recipes/SearchAddressOf.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLocale>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

TfrmAboutDirectory::TfrmAboutDirectory(const AboutDirectory& about, const WindowTexts& texts, QWidget* parent)
    : QDialog(parent),
      address_(about.Address),
      texts_(texts),
      country_(new QComboBox(this)),
      search_(new QLineEdit(about.Search, this)),
      what_(new QLineEdit(this)),
      where_(new QLineEdit(this)),
      verdict_(new QLabel(this)) {
    setObjectName(u"TfrmAboutDirectory");
    setWindowTitle(texts_.Text(WindowText::TeachAboutTitle));
    country_->setObjectName(u"cbxAboutCountry");
    search_->setObjectName(u"edtAboutSearch");
    what_->setObjectName(u"edtAboutWhat");
    where_->setObjectName(u"edtAboutWhere");
    verdict_->setObjectName(u"lblAboutVerdict");
    verdict_->setWordWrap(true);
    verdict_->setTextFormat(Qt::PlainText);
    auto* const hint = new QLabel(texts_.Text(WindowText::TeachSearchHint), this);
    hint->setWordWrap(true);
    auto* const form = new QFormLayout(this);
    const auto add = [&](WindowText label, QWidget* control) {
        form->addRow(texts_.Text(label), control);
        control->setAccessibleName(QString(texts_.Text(label)).remove(u'&').remove(u':'));
    };
    add(WindowText::TeachCountry, country_);
    form->addRow(hint);
    add(WindowText::TeachSearchedWhat, what_);
    add(WindowText::TeachSearchedWhere, where_);
    add(WindowText::TeachSearch, search_);
    form->addRow(verdict_);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    take_ = buttons->button(QDialogButtonBox::Ok);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(what_, &QLineEdit::textEdited, this, &TfrmAboutDirectory::MakeSearch);
    connect(where_, &QLineEdit::textEdited, this, &TfrmAboutDirectory::MakeSearch);
    connect(search_, &QLineEdit::textChanged, this, &TfrmAboutDirectory::Check);
    OfferCountries(about.Country);
    Check();
    resize(520, sizeHint().height());
}

void TfrmAboutDirectory::OfferCountries(const QString& chosen) {
    std::vector<std::pair<QString, QString>> countries; // names and codes
    for (int i = 1; i <= QLocale::LastTerritory; ++i) {
        const auto territory = static_cast<QLocale::Territory>(i);
        const QString code = QLocale::territoryToCode(territory);
        if (code.size() == 2)
            countries.emplace_back(QLocale::territoryToString(territory), code);
    }
    std::sort(countries.begin(), countries.end());
    country_->addItem(texts_.Text(WindowText::TeachCountryOfPage), QString());
    for (const auto& [name, code] : countries)
        country_->addItem(u"%1 (%2)"_s.arg(name, code), code);
    int place = country_->findData(chosen, Qt::UserRole, Qt::MatchFixedString);
    if (place < 0) {
        country_->addItem(chosen, chosen); // as somebody wrote it
        place = country_->count() - 1;
    }
    country_->setCurrentIndex(place);
}

void TfrmAboutDirectory::MakeSearch() {
    const QString made = SearchAddressOf(address_, what_->text(), where_->text());
    if (!made.isEmpty())
        search_->setText(made);
    else if (!what_->text().trimmed().isEmpty() || !where_->text().trimmed().isEmpty())
        verdict_->setText(texts_.With(WindowText::TeachSearchNot, {address_}));
}

void TfrmAboutDirectory::Check() {
    const QString reason = Search().isEmpty() ? QString() : WhyNoSearchAddress(Search());
    verdict_->setText(reason);
    take_->setEnabled(reason.isEmpty());
}

} // namespace Brindle
