#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include "app/app_model.h"

namespace ulvak {

/// One finding as the detail column shows it: every text ready, every condition decided.
///
/// Threads: the UI thread only.
class DetailModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString token READ token NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString level READ level NOTIFY changed)
    Q_PROPERTY(QString source READ source NOTIFY changed)
    /// Who said so; for a rule's verdict empty, like the confidence that it ends in where there is one.
    Q_PROPERTY(QString badge READ badge NOTIFY changed)
    Q_PROPERTY(QString confidenceText READ confidenceText NOTIFY changed)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY changed)
    /// How much less than the size is freed, and why; empty where it is all of it.
    Q_PROPERTY(QString freedText READ freedText NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    /// "trash", "simulator" or "none".
    Q_PROPERTY(QString action READ action NOTIFY changed)
    /// The name of the prominent button's colour.
    Q_PROPERTY(QString actionColor READ actionColor NOTIFY changed)
    Q_PROPERTY(QString reason READ reason NOTIFY changed)
    Q_PROPERTY(QString quitText READ quitText NOTIFY changed)
    Q_PROPERTY(bool asksBeforeTrash READ asksBeforeTrash NOTIFY changed)
    Q_PROPERTY(bool offersPermanent READ offersPermanent NOTIFY changed)
    // What the two dialogs say.
    Q_PROPERTY(QString trashQuestion READ trashQuestion NOTIFY changed)
    Q_PROPERTY(QString trashMessage READ trashMessage NOTIFY changed)
    Q_PROPERTY(QString permanentQuestion READ permanentQuestion NOTIFY changed)
    Q_PROPERTY(QString permanentButton READ permanentButton NOTIFY changed)
    Q_PROPERTY(bool canReset READ canReset NOTIFY changed)
    Q_PROPERTY(bool showsModel READ showsModel NOTIFY changed)
    /// Whether the verdict is the model's, which may be wrong.
    Q_PROPERTY(bool showsModelWarning READ showsModelWarning NOTIFY changed)
    /// Of the button that asks the model.
    Q_PROPERTY(QString analyzeText READ analyzeText NOTIFY busyChanged)
    Q_PROPERTY(bool isAnalyzing READ isAnalyzing NOTIFY busyChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY busyChanged)
    Q_PROPERTY(QString contentsTitle READ contentsTitle NOTIFY changed)
    /// Of `symbol`, `name`, `location` and `sizeText`; at most twelve.
    Q_PROPERTY(QVariantList contents READ contents NOTIFY changed)
    Q_PROPERTY(QString moreContents READ moreContents NOTIFY changed)
    /// Of `label` and `value`.
    Q_PROPERTY(QVariantList metadata READ metadata NOTIFY changed)
public:
    /// `app` outlives this object.
    explicit DetailModel(AppModel& app, QObject* parent = nullptr);

    /// Null for none; nothing is to be read then.
    void setFinding(FindingPointer finding);
    [[nodiscard]] const FindingPointer& finding() const { return finding_; }

    [[nodiscard]] QString token() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString level() const;
    [[nodiscard]] QString source() const;
    [[nodiscard]] QString badge() const;
    [[nodiscard]] QString confidenceText() const;
    [[nodiscard]] QString sizeText() const;
    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString explanation() const;
    [[nodiscard]] QString action() const;
    [[nodiscard]] QString actionColor() const;
    [[nodiscard]] QString reason() const;
    [[nodiscard]] QString quitText() const;
    [[nodiscard]] bool asksBeforeTrash() const;
    [[nodiscard]] bool offersPermanent() const;
    [[nodiscard]] QString trashQuestion() const;
    [[nodiscard]] QString trashMessage() const;
    [[nodiscard]] QString permanentQuestion() const;
    [[nodiscard]] QString permanentButton() const;
    [[nodiscard]] bool canReset() const;
    [[nodiscard]] bool showsModel() const;
    [[nodiscard]] bool showsModelWarning() const;
    [[nodiscard]] QString analyzeText() const;
    [[nodiscard]] bool isAnalyzing() const;
    [[nodiscard]] bool isCleaning() const;
    [[nodiscard]] QString contentsTitle() const;
    [[nodiscard]] QVariantList contents() const { return contents_; }
    [[nodiscard]] QString moreContents() const;
    [[nodiscard]] QVariantList metadata() const;

    /// The same condition for a finding's row menu.
    [[nodiscard]] static bool canReset(const Finding& finding);

signals:
    void changed();
    void busyChanged();  ///< after `changed` too

private:
    /// What is shown while there is nothing to show.
    [[nodiscard]] const Finding& shownFinding() const;
    [[nodiscard]] QVariantList firstContents() const;

    AppModel& app_;
    FindingPointer finding_;
    QVariantList contents_;  ///< the views read a list again for each of its rows
};

}  // namespace ulvak
