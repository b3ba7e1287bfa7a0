#include "ui/shown.h"

#include <string>

#include "core/text.h"

namespace ulvak {

QString shown(std::string_view text) {
    return QString::fromStdString(printable(text));
}

QString shownLines(std::string_view text) {
    QString lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (!lines.isEmpty())
            lines += u'\n';
        lines += shown(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    while (lines.endsWith(u'\n'))
        lines.chop(1);
    return lines;
}

// One character per byte.
QString idText(std::string_view id) {
    return QString::fromLatin1(id.data(), static_cast<qsizetype>(id.size()));
}

std::string idOf(const QString& findingId) {
    return findingId.toLatin1().toStdString();
}

}  // namespace ulvak
