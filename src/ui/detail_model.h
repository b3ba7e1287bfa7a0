#pragma once

#include <QObject>
#include <QString>
#include <vector>

#include "app/app_model.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// One finding as shown in the detail column: all texts formatted, all conditions decided.
///
/// Threads: the UI thread only.
class DetailModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString findingId READ findingId NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(ulvak::LevelInfo level READ level NOTIFY changed FINAL)
    Q_PROPERTY(QString sourceLabel READ sourceLabel NOTIFY changed FINAL)
    Q_PROPERTY(QString sourceSymbol READ sourceSymbol NOTIFY changed FINAL)
    /// Who gave the verdict; empty for a rule's, as is the confidence, which ends this text if there is one.
    Q_PROPERTY(QString badge READ badge NOTIFY changed FINAL)
    Q_PROPERTY(QString confidenceText READ confidenceText NOTIFY changed FINAL)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY changed FINAL)
    /// How much less than the size is freed, and why; empty if all of it is.
    Q_PROPERTY(QString freedText READ freedText NOTIFY changed FINAL)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed FINAL)
    Q_PROPERTY(Action action READ action NOTIFY changed FINAL)
    /// The prominent button's colour name.
    Q_PROPERTY(QString actionColor READ actionColor NOTIFY changed FINAL)
    Q_PROPERTY(QString reason READ reason NOTIFY changed FINAL)
    /// What the user can run instead; empty for nothing.
    Q_PROPERTY(QString command READ command NOTIFY changed FINAL)
    Q_PROPERTY(QString quitText READ quitText NOTIFY changed FINAL)
    Q_PROPERTY(bool asksBeforeTrash READ asksBeforeTrash NOTIFY changed FINAL)
    Q_PROPERTY(bool offersPermanent READ offersPermanent NOTIFY changed FINAL)
    // The texts of the two dialogs.
    Q_PROPERTY(QString trashQuestion READ trashQuestion NOTIFY changed FINAL)
    Q_PROPERTY(QString trashMessage READ trashMessage NOTIFY changed FINAL)
    Q_PROPERTY(QString permanentQuestion READ permanentQuestion NOTIFY changed FINAL)
    Q_PROPERTY(QString permanentButton READ permanentButton NOTIFY changed FINAL)
    Q_PROPERTY(bool canReset READ canReset NOTIFY changed FINAL)
    Q_PROPERTY(bool showsModel READ showsModel NOTIFY changed FINAL)
    /// Whether the verdict is the model's, which may be wrong.
    Q_PROPERTY(bool showsModelWarning READ showsModelWarning NOTIFY changed FINAL)
    /// The label of the button that asks the model.
    Q_PROPERTY(QString analyzeText READ analyzeText NOTIFY busyChanged FINAL)
    Q_PROPERTY(bool isAnalyzing READ isAnalyzing NOTIFY busyChanged FINAL)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY busyChanged FINAL)
    Q_PROPERTY(QString contentsTitle READ contentsTitle NOTIFY changed FINAL)
    /// `ContentLine`s, at most twelve.
    Q_PROPERTY(ulvak::RecordList* contents READ contents CONSTANT FINAL)
    Q_PROPERTY(QString moreContents READ moreContents NOTIFY changed FINAL)
    /// `MetadataLine`s.
    Q_PROPERTY(ulvak::RecordList* metadata READ metadata CONSTANT FINAL)
public:
    /// What the prominent button does, if there is one.
    // NOLINTNEXTLINE(readability-identifier-naming): QML sees only capitalised enumerators
    enum class Action : int { Trash, Simulator, EmptyTrash, None };
    Q_ENUM(Action)

    /// `app` must outlive this object.
    explicit DetailModel(AppModel& app, QObject* parent = nullptr);

    /// Null for none; the properties must then not be read.
    void setFinding(FindingPointer finding);
    [[nodiscard]] const FindingPointer& finding() const { return finding_; }

    [[nodiscard]] QString findingId() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] LevelInfo level() const;
    [[nodiscard]] QString sourceLabel() const;
    [[nodiscard]] QString sourceSymbol() const;
    [[nodiscard]] QString badge() const;
    [[nodiscard]] QString confidenceText() const;
    [[nodiscard]] QString sizeText() const;
    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString explanation() const;
    [[nodiscard]] Action action() const;
    [[nodiscard]] QString actionColor() const;
    [[nodiscard]] QString reason() const;
    [[nodiscard]] QString command() const;
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
    [[nodiscard]] RecordListOf<ContentLine>* contents() { return &contents_; }
    [[nodiscard]] QString moreContents() const;
    [[nodiscard]] RecordListOf<MetadataLine>* metadata() { return &metadata_; }

    /// The same condition, for a finding's row menu.
    [[nodiscard]] static bool canReset(const Finding& finding);

signals:
    void changed();
    void busyChanged();  ///< sent after `changed` too

private:
    /// A placeholder if there is no finding.
    [[nodiscard]] const Finding& shownFinding() const;
    [[nodiscard]] std::vector<ContentLine> firstContents() const;
    [[nodiscard]] std::vector<MetadataLine> knownMetadata() const;

    AppModel& app_;
    FindingPointer finding_;
    RecordListOf<ContentLine> contents_;
    RecordListOf<MetadataLine> metadata_;
};

}  // namespace ulvak
