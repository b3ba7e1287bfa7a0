#include <QQuickItem>
#include <QString>
#include <QStringList>

#include "support/findings.h"
#include "ui/staged_window.h"

// Nothing in the window speaks of what only a Mac has.

namespace ulvak {
namespace {

using namespace test;

class WordsTest : public WindowTest {
protected:
    static QStringList textsBelow(const QObject* object) {
        QStringList texts;
        const auto* item = qobject_cast<const QQuickItem*>(object);
        if (item != nullptr && !item->isVisible())
            return texts;
        for (const char* property : {"text", "title", "message", "placeholderText"}) {
            const QString text = object->property(property).toString();
            if (!text.isEmpty())
                texts.append(text);
        }
        for (const QObject* child : object->children())
            texts += textsBelow(child);
        if (item != nullptr) {
            for (const QQuickItem* child : item->childItems()) {
                if (child->parent() != object)
                    texts += textsBelow(child);
            }
        }
        return texts;
    }
    void check(const char* page) const {
        SCOPED_TRACE(page);
        const QStringList texts = textsBelow(window) + textsBelow(window->contentItem());
        EXPECT_GT(texts.size(), 5);
        for (const QString& text : texts) {
            for (const char* foreign : {"Apple", "Finder", "Mac", "Siri", "imülatör"})
                EXPECT_FALSE(text.contains(QString::fromUtf8(foreign))) << text.toStdString();
        }
    }
};

TEST_F(WordsTest, AreThoseOfThisSystemBeforeAndAfterAScan) {
    stage.result = {finding("/v/a", SafetyLevel::unknown), finding("/v/b", SafetyLevel::safe)};
    open();
    check("welcome");
    scanAll();
    check("overview");
}

TEST_F(WordsTest, AreThoseOfThisSystemInAListAndItsDetails) {
    stage.result = {guessed(finding("/v/a", SafetyLevel::caution, 3)),
                    finding("/v/b", SafetyLevel::caution, 2)};
    openScanned(QStringLiteral("caution"));
    click(row(QStringLiteral("a")));
    check("detail");
    click(row(QStringLiteral("a")), Qt::RightButton);
    check("menu");
    key(Qt::Key_Escape);
    key(Qt::Key_A, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return shows(QStringLiteral("cleanSeveral")); }));
    click(QStringLiteral("cleanSeveral"));
    check("question");
}

}  // namespace
}  // namespace ulvak
