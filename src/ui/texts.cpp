#include "ui/texts.h"

#include <QLocale>

#include "core/format.h"

namespace ulvak::Texts {

QString fixed(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString bytes(std::int64_t count) {
    return QString::fromStdString(Format::bytes(count));
}

QString number(std::int64_t value) {
    static const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    return turkish.toString(static_cast<qlonglong>(value));
}

QString wholeSeconds(double seconds) {
    return QString::number(static_cast<qint64>(seconds));
}

QString badge(const Finding& finding) {
    return finding.source == VerdictSource::rule ? QString()
                                                 : QString::fromStdString(badgeText(currentVerdict(finding)));
}

QString confidence(const Finding& finding) {
    return finding.confidence ? QStringLiteral("%") + QString::number(*finding.confidence) : QString();
}

}  // namespace ulvak::Texts
