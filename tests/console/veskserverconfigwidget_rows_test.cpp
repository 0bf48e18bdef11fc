#include "tests/console/endpointstab.h"
#include "tests/console/modelrules.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

// Adding and removing endpoints, with the buttons and with the keyboard.

namespace {

QByteArray endpoints(int count)
{
    QByteArray xml;
    for (int i = 0; i < count; ++i) {
        xml += endpointXml("opc.tcp://h" + QByteArray::number(i) + ":" + QByteArray::number(i + 1),
                           "opc.tcp://127.0.0.1:" + QByteArray::number(i + 1),
                           settingXml("Basic256", {"Sign"}));
    }
    return serverConfig(xml);
}

QString url(int row)
{
    return u"opc.tcp://h%1:%2"_s.arg(row).arg(row + 1);
}

bool isSelected(const EndpointsTab& tab, int row)
{
    return tab.table().selectionModel()->isRowSelected(row, QModelIndex());
}

} // namespace

class VeskServerConfigWidgetRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void remove_is_enabled_with_more_than_one_row_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<bool>("isEnabled");
        QTest::newRow("0") << 0 << false;
        QTest::newRow("1") << 1 << false;
        QTest::newRow("2") << 2 << true;
        QTest::newRow("3") << 3 << true;
    }

    void remove_is_enabled_with_more_than_one_row()
    {
        QFETCH(const int, rows);
        QFETCH(const bool, isEnabled);
        const EndpointsTab tab(endpoints(rows));
        QCOMPARE(tab.rowCount(), rows);
        QCOMPARE(tab.remove().isEnabled(), isEnabled);
    }

    void add_without_a_row_does_nothing()
    {
        const EndpointsTab tab(endpoints(0));
        EndpointsTab::click(tab.add());
        QCOMPARE(tab.rowCount(), 0);
        QVERIFY(tab.isClean());
    }

    void add_appends_a_twin_of_the_last_row_and_selects_it()
    {
        const EndpointsTab tab(endpoints(2));
        const ModelRules rules(tab.model());
        EndpointsTab::click(tab.add());
        QCOMPARE(tab.rowCount(), 3);
        QCOMPARE(tab.record(2), tab.record(1));
        QCOMPARE(tab.currentRow(), 2);
        QVERIFY(isSelected(tab, 2));
        QCOMPARE(tab.networkName().text(), u"h1"_s);
        QCOMPARE(tab.port().value(), 2);
        QVERIFY(tab.policy("Basic256").isChecked());
        QVERIFY(tab.remove().isEnabled());
        QVERIFY(tab.isDirty());
    }

    void add_on_one_row_gives_two_identical_rows_that_apply_keeps()
    {
        const EndpointsTab tab(endpoints(1));
        EndpointsTab::click(tab.add());
        QCOMPARE(tab.column(2), (QStringList{url(0), url(0)}));
        QVERIFY(tab.remove().isEnabled());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.column(2), (QStringList{url(0), url(0)}));
        QCOMPARE(tab.record(0), tab.record(1));
        QCOMPARE(tab.fileContent().count("<UaEndpoint>"), 2);
        QCOMPARE(tab.currentRow(), 0);
        QVERIFY(tab.isClean());
    }

    void twin_is_a_row_of_its_own()
    {
        const EndpointsTab tab(endpoints(1));
        EndpointsTab::click(tab.add());
        tab.typePort(77);
        QCOMPARE(tab.column(2), (QStringList{url(0), u"opc.tcp://h0:77"_s}));
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.column(2), (QStringList{url(0), u"opc.tcp://h0:77"_s}));
    }

    void remove_takes_the_current_row_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<int>("current");
        QTest::newRow("first") << 0 << QStringList{url(1), url(2)} << 0;
        QTest::newRow("middle") << 1 << QStringList{url(0), url(2)} << 1;
        QTest::newRow("last") << 2 << QStringList{url(0), url(1)} << 1;
    }

    void remove_takes_the_current_row()
    {
        QFETCH(const int, row);
        QFETCH(const QStringList, left);
        QFETCH(const int, current);
        const EndpointsTab tab(endpoints(3));
        const ModelRules rules(tab.model());
        tab.selectRow(row);
        EndpointsTab::click(tab.remove());
        QCOMPARE(tab.column(2), left);
        QVERIFY(tab.isDirty());
        // The controls show the row that is current now.
        QCOMPARE(tab.currentRow(), current);
        QCOMPARE(tab.url().text(), left.at(current));
    }

    void the_last_row_cannot_go()
    {
        const EndpointsTab tab(endpoints(2));
        EndpointsTab::click(tab.remove());
        QCOMPARE(tab.rowCount(), 1);
        QVERIFY(!tab.remove().isEnabled());
        tab.widget->sltRemoveEndpoint();
        QCOMPARE(tab.rowCount(), 1);
        QCOMPARE(tab.column(2), QStringList(url(1)));
    }

    void remove_needs_a_selection()
    {
        const EndpointsTab tab(endpoints(2));
        tab.table().clearSelection();
        EndpointsTab::click(tab.remove());
        QCOMPARE(tab.rowCount(), 2);
        tab.table().setCurrentIndex(QModelIndex());
        EndpointsTab::click(tab.remove());
        QCOMPARE(tab.rowCount(), 2);
        QVERIFY(tab.isClean());
    }

    void removed_rows_are_gone_from_the_file()
    {
        const EndpointsTab tab(endpoints(3));
        tab.selectRow(1);
        EndpointsTab::click(tab.remove());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.column(2), (QStringList{url(0), url(2)}));
        QVERIFY(!tab.fileContent().contains("h1:2"));
        QCOMPARE(tab.currentRow(), 0);
    }

    void insert_and_delete_work_in_the_table()
    {
        const EndpointsTab tab(endpoints(1));
        tab.table().setFocus();
        QTest::keyClick(&tab.table(), Qt::Key_Insert);
        QCOMPARE(tab.rowCount(), 2);
        QVERIFY(tab.isDirty());
        QTest::keyClick(&tab.table(), Qt::Key_Delete);
        QCOMPARE(tab.rowCount(), 1);
        // The button is disabled now, and so is its key.
        QTest::keyClick(&tab.table(), Qt::Key_Delete);
        QCOMPARE(tab.rowCount(), 1);
    }

    void delete_in_another_input_removes_no_row()
    {
        const EndpointsTab tab(endpoints(2));
        tab.networkName().setFocus();
        tab.networkName().setCursorPosition(0);
        QTest::keyClick(&tab.networkName(), Qt::Key_Delete);
        QCOMPARE(tab.rowCount(), 2);
        QCOMPARE(tab.networkName().text(), u"0"_s);
    }

    void rows_are_reached_by_the_arrow_keys()
    {
        const EndpointsTab tab(endpoints(3));
        tab.table().setFocus();
        QTest::keyClick(&tab.table(), Qt::Key_Down);
        QCOMPARE(tab.url().text(), url(1));
        QTest::keyClick(&tab.table(), Qt::Key_End);
        QCOMPARE(tab.url().text(), url(2));
        QTest::keyClick(&tab.table(), Qt::Key_Up);
        QCOMPARE(tab.url().text(), url(1));
        QVERIFY(tab.isClean());
    }

    void the_same_row_again_changes_nothing()
    {
        const EndpointsTab tab(endpoints(2));
        tab.none().setChecked(true);
        const QModelIndex here = tab.model().index(0, 0);
        tab.widget->sltCurrentEndpointChanged(tab.model().index(0, 3), here);
        QVERIFY(tab.none().isChecked());
        tab.widget->sltCurrentEndpointChanged(QModelIndex(), QModelIndex());
        QVERIFY(tab.none().isChecked());
    }

    void no_row_resets_the_security_controls_alone()
    {
        const EndpointsTab tab(endpoints(1));
        QVERIFY(tab.policy("Basic256").isChecked());
        tab.widget->sltCurrentEndpointChanged(QModelIndex(), tab.model().index(0, 0));
        QVERIFY(!tab.policy("Basic256").isChecked());
        QCOMPARE(tab.url().text(), url(0));
        QCOMPARE(tab.networkName().text(), u"h0"_s);
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetRowsTest)

#include "veskserverconfigwidget_rows_test.moc"
