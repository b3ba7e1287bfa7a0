#include "ui/trash_model.h"

#include <QPointer>
#include <QUuid>

#include "ui/texts.h"

namespace ulvak {

TrashModel::TrashModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::trashedBytesChanged, this, &TrashModel::changed);
    connect(&app, &AppModel::trashQuestionChanged, this, &TrashModel::questionChanged);
}

QString TrashModel::text() const {
    return app_.trashedBytes() < 1 ? QString()
                                   : QStringLiteral("Çöp kutusunda ") + Texts::bytes(app_.trashedBytes()) +
                                         QStringLiteral(" bekliyor. Boşaltınca yer açılacak.");
}

void TrashModel::empty() {
    if (!isEmptying_)
        runEmpty(app_.emptyTrash());
}

void TrashModel::emptyAsAsked(const QString& id) {
    if (!isEmptying_)
        runEmpty(app_.emptyTrashAsAsked(QUuid::fromString(id)));
}

void TrashModel::dismissQuestion(const QString& id) {
    if (id == questionId())
        app_.dismissTrashQuestion();
}

QCoro::Task<> TrashModel::runEmpty(QCoro::Task<> task) {
    const QPointer<TrashModel> self(this);
    isEmptying_ = true;
    emit changed();
    co_await task;
    if (!self)  // the window has closed in the meantime
        co_return;
    isEmptying_ = false;
    emit changed();
}

QString TrashModel::questionId() const {
    const auto& question = app_.trashQuestion();
    return question ? question->id.toString() : QString();
}

QString TrashModel::question() const {
    const auto& question = app_.trashQuestion();
    if (!question)
        return {};
    const Cleaner::TrashContents& contents = *question->contents;
    const auto amount = [](std::int64_t bytes, std::int64_t items) {
        return QStringLiteral("%1 (%2 öğe)").arg(Texts::bytes(bytes), Texts::number(items));
    };
    QString text =
        contents.isComplete
            ? QStringLiteral("Çöp kutusunda toplam %1 var. ").arg(amount(contents.bytes, contents.items))
            : QStringLiteral("Çöp kutusunun bir bölümüne bakılamadı. Görülen: %1. ")
                  .arg(amount(contents.bytes, contents.items));
    text += contents.itemsFromHere == 0 ? QStringLiteral("Bunların hiçbiri bu oturumda buradan atılmadı. ")
                                        : QStringLiteral("Bunun %1 kadarı bu oturumda buradan atıldı. ")
                                              .arg(amount(contents.bytesFromHere, contents.itemsFromHere));
    return text + QStringLiteral("Boşaltırsan hepsi kalıcı olarak silinir. Bu işlem geri alınamaz.");
}

}  // namespace ulvak
