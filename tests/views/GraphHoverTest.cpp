#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>
#include <memory>
#include <optional>

#include "ViewSession.h"

Q_IMPORT_QML_PLUGIN(TallowmerePlugin)

using tallowmere::testing::ViewSession;

namespace {

// The first item under `root` owned by `owner`: a segment of the bar when `segment`, else a
// link of the legend (only a segment knows its graph).
QQuickItem* toolItem(QQuickItem* root, const QString& owner, bool segment) {
    for (QQuickItem* child : root->childItems()) {
        if (child->property("owner").toString() == owner &&
            child->property("graph").isValid() == segment) {
            return child;
        }
        if (QQuickItem* found = toolItem(child, owner, segment)) {
            return found;
        }
    }
    return nullptr;
}

QPoint centreOf(const QQuickItem* item) {
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

}  // namespace

// Hover comes only from real pointer events, which a QML test cannot send in this Qt.
class GraphHoverTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void theToolUnderThePointerIsHovered();
    void aLateLeaveKeepsTheToolJustEntered();
    void cleanupTestCase();

private:
    QString hoveredTool() const { return m_graph->property("hoveredTool").toString(); }

    std::optional<ViewSession> m_session;
    std::unique_ptr<QQuickView> m_view;
    QQuickItem* m_graph = nullptr;
};

void GraphHoverTest::initTestCase() {
    QQuickStyle::setStyle("Basic");
    m_session.emplace();
    m_view = std::make_unique<QQuickView>();
    m_session->registerFor(*m_view->engine());
    m_view->setSource(QUrl::fromLocalFile(GRAPH_SCENE));
    QVERIFY2(m_view->status() == QQuickView::Ready,
             qPrintable(m_view->errors().value(0).toString()));
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    m_graph = m_view->rootObject()->findChild<QQuickItem*>("graph");
    QVERIFY(m_graph);
}

void GraphHoverTest::init() {
    // Start from a corner that nothing hovers.
    QTest::mouseMove(m_view.get(), QPoint(2, 2));
    QTRY_COMPARE(hoveredTool(), QString());
}

void GraphHoverTest::theToolUnderThePointerIsHovered() {
    QQuickItem* codex = toolItem(m_graph, "Codex", true);
    QQuickItem* cursorLink = toolItem(m_graph, "Cursor", false);
    QVERIFY(codex && cursorLink);

    QTest::mouseMove(m_view.get(), centreOf(codex));
    QTRY_COMPARE(hoveredTool(), QString("Codex"));
    QVERIFY(codex->property("isHovered").toBool());

    // Straight from one tool's segment to another's link: the hover goes with the pointer,
    // whichever of the leave and the enter arrives first.
    QTest::mouseMove(m_view.get(), centreOf(cursorLink));
    QTRY_COMPARE(hoveredTool(), QString("Cursor"));
    QVERIFY(!codex->property("isHovered").toBool());

    QTest::mouseMove(m_view.get(), QPoint(m_view->width() - 2, m_view->height() - 2));
    QTRY_COMPARE(hoveredTool(), QString());
}

void GraphHoverTest::aLateLeaveKeepsTheToolJustEntered() {
    QQuickItem* codex = toolItem(m_graph, "Codex", true);
    QVERIFY(codex);
    QTest::mouseMove(m_view.get(), centreOf(codex));
    QTRY_COMPARE(hoveredTool(), QString("Codex"));

    // Another tool is entered before the pointer's leave of this segment is handled.
    QVERIFY(QMetaObject::invokeMethod(m_graph, "hover", Q_ARG(QVariant, QString("Cursor")),
                                      Q_ARG(QVariant, true)));
    QTest::mouseMove(m_view.get(), QPoint(m_view->width() - 2, m_view->height() - 2));
    QTRY_VERIFY(!codex->property("hovered").toBool());
    QCOMPARE(hoveredTool(), QString("Cursor"));

    QVERIFY(QMetaObject::invokeMethod(m_graph, "hover", Q_ARG(QVariant, QString("Cursor")),
                                      Q_ARG(QVariant, false)));
}

void GraphHoverTest::cleanupTestCase() {
    m_view.reset();
    m_session.reset();
}

QTEST_MAIN(GraphHoverTest)

#include "GraphHoverTest.moc"
