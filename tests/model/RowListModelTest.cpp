#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <random>

#include "RowListModel.h"

namespace {

// Rows of a key and a value.
class PairListModel : public tallowmere::RowListModel {
public:
    PairListModel() : RowListModel({"key", "value"}, nullptr) {}

    bool set(const std::vector<std::pair<QString, int>>& pairs) {
        std::vector<Row> rows;
        for (const auto& [key, value] : pairs) {
            rows.push_back({key, value});
        }
        return replaceRows(std::move(rows));
    }

    std::vector<std::pair<QString, int>> pairs() const {
        std::vector<std::pair<QString, int>> pairs;
        for (int row = 0; row < rowCount(); ++row) {
            pairs.emplace_back(data(index(row), Qt::UserRole + 1).toString(),
                               data(index(row), Qt::UserRole + 2).toInt());
        }
        return pairs;
    }
};

}  // namespace

class RowListModelTest : public QObject {
    Q_OBJECT

private slots:
    void anyReplacementEndsInTheGivenRowsWithoutAReset();
    void rowsThatStayAreUpdatedOrMovedInPlace();
};

void RowListModelTest::anyReplacementEndsInTheGivenRowsWithoutAReset() {
    PairListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy counts(&model, &tallowmere::RowListModel::countChanged);
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::pair<QString, int>> target;
        for (int key = 0; key < 12; ++key) {
            if (random() % 3 != 0) {
                target.emplace_back(QString::number(key), static_cast<int>(random() % 4));
            }
        }
        std::shuffle(target.begin(), target.end(), random);
        const int before = model.rowCount();
        counts.clear();
        model.set(target);
        QCOMPARE(model.pairs(), target);
        QCOMPARE(model.count(), static_cast<int>(target.size()));
        QCOMPARE(counts.count(), before == model.count() ? 0 : 1);
    }
    QCOMPARE(resets.count(), 0);
    QVERIFY(!model.set(model.pairs()));  // the same rows change nothing
}

void RowListModelTest::rowsThatStayAreUpdatedOrMovedInPlace() {
    PairListModel model;
    model.set({{"a", 1}, {"b", 2}, {"c", 3}});
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy moved(&model, &QAbstractItemModel::rowsMoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    QVERIFY(model.set({{"a", 1}, {"b", 20}, {"c", 3}}));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.front().front().toModelIndex().row(), 1);

    QVERIFY(model.set({{"c", 3}, {"a", 1}, {"b", 20}}));
    QCOMPARE(moved.count(), 1);
    QCOMPARE(inserted.count() + removed.count(), 0);
    QCOMPARE(changed.count(), 1);
}

QTEST_GUILESS_MAIN(RowListModelTest)
#include "RowListModelTest.moc"
