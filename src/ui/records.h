#pragma once

#include <QMetaType>
#include <QString>

#include "core/finding.h"
#include "ui/level.h"

// What the views show of one thing each, formatted. Plain values, safe from any thread.

namespace ulvak {

/// All that a level shows of itself.
struct LevelInfo {
    Q_GADGET
    Q_PROPERTY(ulvak::Level::Value level MEMBER level FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString shortTitle MEMBER shortTitle FINAL)
    Q_PROPERTY(QString symbol MEMBER symbol FINAL)
    Q_PROPERTY(QString color MEMBER color FINAL)
    Q_PROPERTY(QString summary MEMBER summary FINAL)
public:
    Level::Value level = Level::Value::Unknown;
    QString name;  ///< the raw value
    QString title;
    QString shortTitle;  ///< of a badge with little room
    QString symbol;
    QString color;  ///< its name
    QString summary;

    [[nodiscard]] static LevelInfo of(SafetyLevel level);
    friend bool operator==(const LevelInfo&, const LevelInfo&) = default;
};

/// A level with what it holds.
struct LevelLine : LevelInfo {
    Q_GADGET
    Q_PROPERTY(QString sizeText MEMBER sizeText FINAL)
    Q_PROPERTY(QString countText MEMBER countText FINAL)
public:
    QString sizeText;
    QString countText;

    friend bool operator==(const LevelLine&, const LevelLine&) = default;
};

/// A level with how many of the selected findings have it.
struct LevelCount {
    Q_GADGET
    Q_PROPERTY(ulvak::LevelInfo about MEMBER about FINAL)
    Q_PROPERTY(int number MEMBER number FINAL)
public:
    LevelInfo about;
    int number = 0;

    friend bool operator==(const LevelCount&, const LevelCount&) = default;
};

/// A part of the disk's bar, from `begin` to `end` of the whole.
struct DiskSegment {
    Q_GADGET
    Q_PROPERTY(QString levelName MEMBER levelName FINAL)
    Q_PROPERTY(QString levelColor MEMBER levelColor FINAL)
    Q_PROPERTY(double fraction MEMBER fraction FINAL)
    Q_PROPERTY(double begin MEMBER begin FINAL)
    Q_PROPERTY(double end MEMBER end FINAL)
public:
    QString levelName;   ///< of a level; empty for what no finding explains
    QString levelColor;  ///< the same
    double fraction = 0;
    double begin = 0;
    double end = 0;

    friend bool operator==(const DiskSegment&, const DiskSegment&) = default;
};

/// One of the largest findings.
struct LargestLine {
    Q_GADGET
    Q_PROPERTY(ulvak::Level::Value level MEMBER level FINAL)
    Q_PROPERTY(QString symbol MEMBER symbol FINAL)
    Q_PROPERTY(QString levelColor MEMBER levelColor FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString location MEMBER location FINAL)
    Q_PROPERTY(QString sizeText MEMBER sizeText FINAL)
public:
    Level::Value level = Level::Value::Unknown;
    QString symbol;      ///< the level's
    QString levelColor;  ///< its name
    QString title;
    QString location;
    QString sizeText;

    friend bool operator==(const LargestLine&, const LargestLine&) = default;
};

/// Something that can be done with a finding.
struct ActionLine {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString symbol MEMBER symbol FINAL)
public:
    QString name;
    QString title;
    QString symbol;

    friend bool operator==(const ActionLine&, const ActionLine&) = default;
};

/// Something that lies in a finding.
struct ContentLine {
    Q_GADGET
    Q_PROPERTY(QString symbol MEMBER symbol FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString location MEMBER location FINAL)
    Q_PROPERTY(QString sizeText MEMBER sizeText FINAL)
public:
    QString symbol;
    QString name;
    QString location;
    QString sizeText;

    friend bool operator==(const ContentLine&, const ContentLine&) = default;
};

/// Something that is known of a finding.
struct MetadataLine {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label FINAL)
    Q_PROPERTY(QString value MEMBER value FINAL)
public:
    QString label;
    QString value;

    friend bool operator==(const MetadataLine&, const MetadataLine&) = default;
};

/// What the menu of a row offers.
struct RowMenuInfo {
    Q_GADGET
    Q_PROPERTY(bool isThere MEMBER isThere FINAL)
    Q_PROPERTY(bool canTrash MEMBER canTrash FINAL)
    Q_PROPERTY(bool canReset MEMBER canReset FINAL)
    Q_PROPERTY(bool isCleaning MEMBER isCleaning FINAL)
public:
    bool isThere = false;  ///< not when the finding has gone from the list; nothing is offered then
    bool canTrash = false;
    bool canReset = false;
    bool isCleaning = false;

    friend bool operator==(const RowMenuInfo&, const RowMenuInfo&) = default;
};

}  // namespace ulvak
