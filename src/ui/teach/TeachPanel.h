#pragma once

#include "core/LeadList.h"
#include "i18n/WindowTexts.h"
#include "recipes/TeachSession.h"
#include "ui/LeadTableModel.h"
#include "ui/LeadTableView.h"
#include "ui/WrapRow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QWidget>

namespace Brindle {

/// The side panel of teaching: the fields with what is read of them, the texts of the first business to choose from,
/// and a live table of all businesses below. It shows a session and says what the user wants; it changes nothing
/// itself.
class TeachPanel : public PaneOfRows {
    Q_OBJECT

public:
    explicit TeachPanel(QWidget* parent = nullptr);
    ~TeachPanel() override;

    void ApplyTexts(const WindowTexts& texts, const QStringList& captions);
    /// Shows what the session has come to; the session stays in use until `Detach`.
    void Show(const TeachSession& session);
    void Detach();
    /// A line below the fields; empty: none.
    void Say(const QString& line);
    /// Whether the page can be pointed at, as it can until somebody says that it cannot.
    void SetPointing(bool pointing) { pointing_ = pointing; }
    void SetName(const QString& name);
    QString Name() const { return name_->text().trimmed(); }
    /// The table of all businesses, which lies elsewhere in the window.
    LeadTableView* Table() const { return table_; }
    const LeadList& Leads() const { return leads_; }

Q_SIGNALS:
    /// The text chosen from the list is this field.
    void TextChosen(NodeIndex element, Field column);
    void TextHighlighted(NodeIndex element);
    void NextChosen(NodeIndex element);
    void DetailsChosen(NodeIndex element);
    void FieldForgotten(Field column);
    /// The next page is to be shown, by pointing or from the list; false: not any more.
    void PointAtNext(bool point);
    void NextForgotten();
    void DetailsWanted(bool wanted);
    /// A business's own page is to be shown and taught; false: the list again.
    void OwnPageWanted(bool wanted);
    /// Country and search address are to be asked for.
    void AboutClicked();
    void SaveClicked();
    void LeaveClicked();

private:
    NodeIndex ChosenText() const;
    void ShowTexts(const TeachSession& session);
    void ShowFields(const TeachSession& session);
    void OfferFields();
    void OfferLinks(bool offer);
    void ShowPlace(const TeachSession& session);
    QString ProblemText(TeachProblem problem) const;
    void Use();

    QLabel* title_;
    QLabel* hint_;
    QTreeWidget* fields_;
    QPushButton* forget_;
    QLabel* textsLabel_;
    QListWidget* texts_;
    QComboBox* field_;
    QPushButton* use_;
    QLabel* next_;
    QPushButton* pointNext_;
    QPushButton* forgetNext_;
    QCheckBox* details_;
    QPushButton* ownPage_;
    QPushButton* about_;
    QLabel* said_;
    QLabel* nameLabel_;
    QLineEdit* name_;
    QPushButton* save_;
    QPushButton* leave_;
    LeadList leads_;
    LeadTableModel model_{leads_};
    QPointer<LeadTableView> table_; // belongs to the window where it lies
    QStringList captions_ = EnglishCaptions();
    QString proposed_;
    QString countText_;
    QString nextText_;
    QString noNext_;
    QString itemNext_;
    QString itemDetails_;
    QString textsText_;
    QString ownTextsText_;
    QString linksText_;
    WindowTexts windowTexts_;
    bool pointing_ = true;
    bool choosingNext_ = false; // the list shows the page's links
    const TeachSession* session_ = nullptr;
};

} // namespace Brindle
