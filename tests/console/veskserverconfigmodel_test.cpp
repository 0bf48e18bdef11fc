#include "console/veskserverconfigmodel.h"
#include "tests/console/modelrules.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

const QList<SecurityRecord> twoSettings = {{u"urn:b"_s, 6}, {u"urn:a"_s, 1}};

EndpointRecord record(int number)
{
    return {0, u"opc.tcp://host:%1"_s.arg(number), u"opc.tcp://bind:%1"_s.arg(number), twoSettings};
}

QVariant cell(const VeskServerConfigModel& model, int row, int column, int role = Qt::DisplayRole)
{
    return model.data(model.index(row, column), role);
}

/// "row,column" of each signal, from top left to bottom right.
QStringList changedCells(const QSignalSpy& spy)
{
    QStringList cells;
    for (const QList<QVariant>& arguments : spy) {
        const auto topLeft = arguments.at(0).toModelIndex();
        const auto bottomRight = arguments.at(1).toModelIndex();
        cells.append(u"%1,%2-%3,%4"_s.arg(topLeft.row())
                         .arg(topLeft.column())
                         .arg(bottomRight.row())
                         .arg(bottomRight.column()));
    }
    return cells;
}

} // namespace

class VeskServerConfigModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<VeskServerConfigModel>();
        m_rules = std::make_unique<ModelRules>(*m_model);
    }

    void cleanup()
    {
        m_rules.reset();
        m_model.reset();
    }

    void empty_model_has_no_rows_and_four_columns()
    {
        QCOMPARE(m_model->rowCount(), 0);
        QCOMPARE(m_model->columnCount(), 4);
        QVERIFY(!cell(*m_model, 0, 0).isValid());
        QVERIFY(m_model->endpoints().isEmpty());
    }

    void operations_on_rows_out_of_range_do_nothing_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("row");
        QTest::newRow("empty model") << 0 << 0;
        QTest::newRow("before the first") << 2 << -1;
        QTest::newRow("behind the last") << 2 << 2;
        QTest::newRow("far away") << 2 << 1000000;
    }

    void operations_on_rows_out_of_range_do_nothing()
    {
        QFETCH(const int, rows);
        QFETCH(const int, row);
        addRows(rows);
        const QList<EndpointRecord> before = m_model->endpoints();
        const QSignalSpy changed(m_model.get(), &VeskServerConfigModel::dataChanged);
        const QSignalSpy removed(m_model.get(), &VeskServerConfigModel::rowsRemoved);

        m_model->removeEndpoint(row);
        m_model->setProtocol(row, 1);
        m_model->setUrl(row, u"x"_s);
        m_model->setStackUrl(row, u"x"_s);
        m_model->setSecuritySettings(row, {});

        QCOMPARE(m_model->endpoints(), before);
        QCOMPARE(m_model->endpoint(row), EndpointRecord());
        QCOMPARE(changed.count(), 0);
        QCOMPARE(removed.count(), 0);
    }

    void clear_of_an_empty_model_emits_nothing()
    {
        const QSignalSpy removed(m_model.get(), &VeskServerConfigModel::rowsRemoved);
        const QSignalSpy reset(m_model.get(), &VeskServerConfigModel::modelReset);
        m_model->clear();
        QCOMPARE(removed.count(), 0);
        QCOMPARE(reset.count(), 0);
    }

    void clear_removes_all_rows_in_one_operation()
    {
        addRows(3);
        const QSignalSpy removed(m_model.get(), &VeskServerConfigModel::rowsRemoved);
        m_model->clear();
        QCOMPARE(m_model->rowCount(), 0);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 0);
        QCOMPARE(removed.at(0).at(2).toInt(), 2);
    }

    void row_count_is_the_same_for_every_parent()
    {
        addRows(2);
        QCOMPARE(m_model->rowCount(), 2);
        QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 2);
    }

    void column_count_is_zero_below_a_cell()
    {
        addRows(1);
        QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 0);
    }

    void header_names_the_columns_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<Qt::Orientation>("orientation");
        QTest::addColumn<int>("role");
        QTest::addColumn<QVariant>("expected");
        const int display = Qt::DisplayRole;
        QTest::newRow("number") << 0 << Qt::Horizontal << display << QVariant(u"#"_s);
        QTest::newRow("protocol") << 1 << Qt::Horizontal << display << QVariant(u"Protocol"_s);
        QTest::newRow("url") << 2 << Qt::Horizontal << display << QVariant(u"URL"_s);
        QTest::newRow("security") << 3 << Qt::Horizontal << display << QVariant(u"Security"_s);
        QTest::newRow("too far") << 4 << Qt::Horizontal << display << QVariant();
        QTest::newRow("negative") << -1 << Qt::Horizontal << display << QVariant();
        QTest::newRow("vertical") << 0 << Qt::Vertical << display << QVariant();
        QTest::newRow("tooltip") << 0 << Qt::Horizontal << int(Qt::ToolTipRole) << QVariant();
    }

    void header_names_the_columns()
    {
        QFETCH(const int, section);
        QFETCH(const Qt::Orientation, orientation);
        QFETCH(const int, role);
        QFETCH(const QVariant, expected);
        QCOMPARE(m_model->headerData(section, orientation, role), expected);
    }

    void cell_shows_its_field_data()
    {
        QTest::addColumn<int>("protocol");
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("number counts from 1, as text") << 0 << 0 << QVariant(u"1"_s);
        QTest::newRow("tcp") << 0 << 1 << QVariant(u"UA TCP"_s);
        QTest::newRow("https") << 1 << 1 << QVariant(u"UA HTTPS"_s);
        QTest::newRow("other protocol is empty") << 2 << 1 << QVariant();
        QTest::newRow("negative protocol is empty") << -1 << 1 << QVariant();
        QTest::newRow("url") << 0 << 2 << QVariant(u"opc.tcp://host:1"_s);
        QTest::newRow("policies in record order")
            << 0 << 3 << QVariant(QStringList{u"urn:b"_s, u"urn:a"_s});
    }

    void cell_shows_its_field()
    {
        QFETCH(const int, protocol);
        QFETCH(const int, column);
        QFETCH(const QVariant, expected);
        m_model->addEndpoint(protocol, u"opc.tcp://host:1"_s, u"opc.tcp://bind:1"_s, twoSettings);
        QCOMPARE(cell(*m_model, 0, column), expected);
    }

    void last_row_is_numbered_by_the_row_count()
    {
        addRows(12);
        QCOMPARE(cell(*m_model, 11, 0).toString(), u"12"_s);
    }

    void policies_are_a_list_of_uris_even_without_a_setting()
    {
        m_model->addEndpoint(0, u"a"_s, u"b"_s, {});
        QCOMPARE(cell(*m_model, 0, 3), QVariant(QStringList()));
        QCOMPARE(cell(*m_model, 0, 3).typeId(), int(QMetaType::QStringList));
    }

    void other_roles_than_display_are_invalid()
    {
        addRows(1);
        for (const int role : {int(Qt::EditRole), int(Qt::DecorationRole), int(Qt::ToolTipRole),
                               int(Qt::SizeHintRole), int(Qt::UserRole)}) {
            for (int column = 0; column < 4; ++column) {
                QVERIFY(!cell(*m_model, 0, column, role).isValid());
            }
        }
    }

    void cells_cannot_be_edited_in_place()
    {
        addRows(1);
        for (int column = 0; column < 4; ++column) {
            const QModelIndex index = m_model->index(0, column);
            QVERIFY(!m_model->flags(index).testFlag(Qt::ItemIsEditable));
            QVERIFY(!m_model->setData(index, u"x"_s));
        }
        QCOMPARE(m_model->endpoint(0), record(0));
    }

    void add_appends_with_one_insert_operation()
    {
        addRows(1);
        const QSignalSpy about(m_model.get(), &VeskServerConfigModel::rowsAboutToBeInserted);
        const QSignalSpy inserted(m_model.get(), &VeskServerConfigModel::rowsInserted);
        const EndpointRecord added{1, u"https://h:443"_s, u"https://b:443"_s, twoSettings};
        m_model->addEndpoint(added.protocol, added.url, added.stackUrl, added.securitySettings);
        QCOMPARE(m_model->rowCount(), 2);
        QCOMPARE(m_model->endpoint(1), added);
        QCOMPARE(about.count(), 1);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(1).toInt(), 1);
    }

    void adding_many_is_one_insert_operation()
    {
        addRows(1);
        const QSignalSpy inserted(m_model.get(), &VeskServerConfigModel::rowsInserted);
        m_model->addEndpoints({record(1), record(2)});
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(1).toInt(), 1);
        QCOMPARE(inserted.at(0).at(2).toInt(), 2);
        QCOMPARE(m_model->endpoints(), (QList<EndpointRecord>{record(0), record(1), record(2)}));
        m_model->addEndpoints({});
        QCOMPARE(inserted.count(), 1);
    }

    void remove_takes_that_row_alone()
    {
        addRows(3);
        const QSignalSpy removed(m_model.get(), &VeskServerConfigModel::rowsRemoved);
        m_model->removeEndpoint(1);
        QCOMPARE(m_model->endpoints(), (QList<EndpointRecord>{record(0), record(2)}));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(cell(*m_model, 1, 0).toString(), u"2"_s);
    }

    void endpoint_is_a_copy()
    {
        addRows(1);
        EndpointRecord copy = m_model->endpoint(0);
        copy.url = u"changed"_s;
        QCOMPARE(m_model->endpoint(0), record(0));
    }

    void setters_tell_their_column_of_their_row()
    {
        addRows(2);
        const QSignalSpy changed(m_model.get(), &VeskServerConfigModel::dataChanged);
        m_model->setProtocol(1, 1);
        m_model->setUrl(1, u"https://x:1"_s);
        m_model->setSecuritySettings(1, {{u"urn:c"_s, 2}});
        QCOMPARE(changedCells(changed), (QStringList{u"1,1-1,1"_s, u"1,2-1,2"_s, u"1,3-1,3"_s}));
        QCOMPARE(m_model->endpoint(1),
                 (EndpointRecord{1, u"https://x:1"_s, record(1).stackUrl, {{u"urn:c"_s, 2}}}));
        QCOMPARE(m_model->endpoint(0), record(0));
    }

    void stack_url_is_set_without_a_word()
    {
        addRows(1);
        const QSignalSpy changed(m_model.get(), &VeskServerConfigModel::dataChanged);
        m_model->setStackUrl(0, u"opc.tcp://other:1"_s);
        QCOMPARE(m_model->endpoint(0).stackUrl, u"opc.tcp://other:1"_s);
        QCOMPARE(changed.count(), 0);
    }

private:
    void addRows(int count)
    {
        for (int i = 0; i < count; ++i) {
            const EndpointRecord added = record(i);
            m_model->addEndpoint(added.protocol, added.url, added.stackUrl, added.securitySettings);
        }
    }

    std::unique_ptr<VeskServerConfigModel> m_model;
    std::unique_ptr<ModelRules> m_rules;
};

ZANDREL_TEST_MAIN(VeskServerConfigModelTest)

#include "veskserverconfigmodel_test.moc"
