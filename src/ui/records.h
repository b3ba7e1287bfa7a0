#pragma once

#include <QMetaType>
#include <QString>

#include "core/finding.h"
#include "ui/level.h"

// Formatted records for the views. Plain values, safe to use from any thread.

namespace ulvak {

/// How a level is presented.
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
    QString shortTitle;  ///< for badges with little room
    QString symbol;
    QString color;  ///< colour name
    QString summary;

    [[nodiscard]] static LevelInfo of(SafetyLevel level);
    friend bool operator==(const LevelInfo&, const LevelInfo&) = default;
};

/// A level and its totals.
struct LevelLine : LevelInfo {
    Q_GADGET
    Q_PROPERTY(QString sizeText MEMBER sizeText FINAL)
    Q_PROPERTY(QString countText MEMBER countText FINAL)
public:
    QString sizeText;
    QString countText;

    friend bool operator==(const LevelLine&, const LevelLine&) = default;
};

/// A level and the number of selected findings that have it.
struct LevelCount {
    Q_GADGET
    Q_PROPERTY(ulvak::LevelInfo about MEMBER about FINAL)
    Q_PROPERTY(int number MEMBER number FINAL)
public:
    LevelInfo about;
    int number = 0;

    friend bool operator==(const LevelCount&, const LevelCount&) = default;
};

/// A segment of the disk bar, from `begin` to `end` as fractions of the whole.
struct DiskSegment {
    Q_GADGET
    Q_PROPERTY(QString levelName MEMBER levelName FINAL)
    Q_PROPERTY(QString levelColor MEMBER levelColor FINAL)
    Q_PROPERTY(double fraction MEMBER fraction FINAL)
    Q_PROPERTY(double begin MEMBER begin FINAL)
    Q_PROPERTY(double end MEMBER end FINAL)
public:
    QString levelName;   ///< empty for space that no finding explains
    QString levelColor;  ///< likewise
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
    QString levelColor;  ///< colour name
    QString title;
    QString location;
    QString sizeText;

    friend bool operator==(const LargestLine&, const LargestLine&) = default;
};

/// An action for a finding.
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

/// An item inside a finding.
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

/// A piece of metadata about a finding.
struct MetadataLine {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label FINAL)
    Q_PROPERTY(QString value MEMBER value FINAL)
public:
    QString label;
    QString value;

    friend bool operator==(const MetadataLine&, const MetadataLine&) = default;
};

/// The contents of a row's menu.
struct RowMenuInfo {
    Q_GADGET
    Q_PROPERTY(bool isThere MEMBER isThere FINAL)
    Q_PROPERTY(bool canTrash MEMBER canTrash FINAL)
    Q_PROPERTY(bool canReset MEMBER canReset FINAL)
    Q_PROPERTY(bool isCleaning MEMBER isCleaning FINAL)
public:
    bool isThere = false;  ///< false once the finding has left the list; the menu then offers nothing
    bool canTrash = false;
    bool canReset = false;
    bool isCleaning = false;

    friend bool operator==(const RowMenuInfo&, const RowMenuInfo&) = default;
};

}  // namespace ulvak
