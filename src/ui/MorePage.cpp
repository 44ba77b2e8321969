#include "ui/MorePage.h"

#include "ui/AccessKeys.h"

#include <QGridLayout>

namespace Brindle {

namespace {

QLabel* Hint(QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

// Controls are made in the order in which Tab walks through them.
MorePage::MorePage(QWidget* parent)
    : QWidget(parent),
      chkKeep(new QCheckBox(this)),
      lblTarget(new QLabel(this)),
      edtTarget(new QLineEdit(this)),
      lblMailServer(new QLabel(this)),
      edtMailServer(new QLineEdit(this)),
      chkWorkbook(new QCheckBox(this)),
      chkSheetCsv(new QCheckBox(this)),
      lblTargetHint_(Hint(this)),
      lblMailServerHint_(Hint(this)) {
    chkKeep->setObjectName(u"chkKeep");
    edtTarget->setObjectName(u"edtTarget");
    edtMailServer->setObjectName(u"edtMailServer");
    chkWorkbook->setObjectName(u"chkWorkbook");
    chkSheetCsv->setObjectName(u"chkSheetCsv");
    auto* const grid = new QGridLayout(this);
    grid->addWidget(chkKeep, 0, 0, 1, 2);
    grid->addWidget(lblTarget, 1, 0);
    grid->addWidget(edtTarget, 1, 1);
    grid->addWidget(lblTargetHint_, 2, 1);
    grid->setRowMinimumHeight(3, 12);
    grid->addWidget(lblMailServer, 4, 0);
    grid->addWidget(edtMailServer, 4, 1);
    grid->addWidget(lblMailServerHint_, 5, 1);
    grid->setRowMinimumHeight(6, 12);
    grid->addWidget(chkWorkbook, 7, 0, 1, 2);
    grid->addWidget(chkSheetCsv, 8, 0, 1, 2);
    grid->setRowStretch(9, 1);
    grid->setColumnStretch(1, 1);
    ApplyCaptions(WindowTexts());
}

void MorePage::Show(const MoreOptions& options) {
    chkKeep->setChecked(options.StoreKeep);
    edtTarget->setText(options.StoreTarget);
    edtMailServer->setText(options.MailNameServer);
    chkWorkbook->setChecked(options.WorkbookAtEnd);
    chkSheetCsv->setChecked(options.SheetCsvAtEnd);
}

void MorePage::TakeInto(MoreOptions& options) const {
    options.StoreKeep = chkKeep->isChecked();
    options.StoreTarget = edtTarget->text().trimmed();
    options.MailNameServer = edtMailServer->text().trimmed();
    options.WorkbookAtEnd = chkWorkbook->isChecked();
    options.SheetCsvAtEnd = chkSheetCsv->isChecked();
}

void MorePage::ApplyCaptions(const WindowTexts& texts) {
    chkKeep->setText(texts.Text(WindowText::MoreKeep));
    lblTarget->setText(texts.Text(WindowText::MoreTarget));
    lblTargetHint_->setText(texts.Text(WindowText::MoreTargetHint));
    lblMailServer->setText(texts.Text(WindowText::MoreMailServer));
    lblMailServerHint_->setText(texts.Text(WindowText::MoreMailServerHint));
    chkWorkbook->setText(texts.Text(WindowText::MoreWorkbook));
    chkSheetCsv->setText(texts.Text(WindowText::MoreSheetCsv));
    edtTarget->setAccessibleName(WithoutColon(lblTarget->text()));
    edtMailServer->setAccessibleName(WithoutColon(lblMailServer->text()));
}

void MorePage::AddKeys(AccessKeys& keys) const {
    keys.Add(lblTarget, edtTarget);
    keys.Add(lblMailServer, edtMailServer);
    keys.Add(chkKeep);
    keys.Add(chkWorkbook);
    keys.Add(chkSheetCsv);
}

} // namespace Brindle
