#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <cstdint>

#include "app/app_model.h"

namespace ulvak {

/// Several findings as the detail column sums them up.
class MultiSelectionModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    /// Of `level` and `count`, in display order, without levels that none has.
    Q_PROPERTY(QVariantList levels READ levels NOTIFY changed)
    /// Empty when nothing is skipped.
    Q_PROPERTY(QString skippedText READ skippedText NOTIFY changed)
    /// Of those that can be cleaned, in order.
    Q_PROPERTY(QStringList cleanableTokens READ cleanableTokens NOTIFY changed)
    Q_PROPERTY(bool canClean READ canClean NOTIFY changed)
    Q_PROPERTY(bool asksFirst READ asksFirst NOTIFY changed)
    Q_PROPERTY(QString cleanText READ cleanText NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
public:
    using QObject::QObject;

    void setItems(Findings items);
    [[nodiscard]] const Findings& items() const { return items_; }

    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QVariantList levels() const;
    [[nodiscard]] QString skippedText() const;
    [[nodiscard]] QStringList cleanableTokens() const;
    [[nodiscard]] bool canClean() const;
    [[nodiscard]] bool asksFirst() const;
    [[nodiscard]] QString cleanText() const;
    [[nodiscard]] QString warning() const;

signals:
    void changed();

private:
    [[nodiscard]] Findings cleanable() const;
    [[nodiscard]] std::int64_t riskyCount() const;

    Findings items_;
};

}  // namespace ulvak
