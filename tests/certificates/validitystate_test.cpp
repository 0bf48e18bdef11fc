#include "certificates/validitystate.h"

#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(ValidityState)

namespace {

constexpr qint64 second = 10000000;
constexpr qint64 day = 86400 * second;

// Any moment; times are counted from here.
constexpr qint64 begin = 150000 * day;

UaDateTime at(qint64 offset)
{
    return UaDateTime(OpcUa_Int64(begin + offset));
}

} // namespace

class ValidityStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void state_of_a_certificate_data()
    {
        QTest::addColumn<qint64>("now");
        QTest::addColumn<ValidityState>("state");

        // Valid for 100 days.
        QTest::newRow("a tick before it begins") << qint64(-1) << ValidityState::NotYetValid;
        QTest::newRow("a second before it begins") << -second << ValidityState::NotYetValid;
        QTest::newRow("as it begins") << qint64(0) << ValidityState::Healthy;
        QTest::newRow("a second after it began") << second << ValidityState::Healthy;
        QTest::newRow("15 days and a second left") << 85 * day - second << ValidityState::Healthy;
        QTest::newRow("exactly 15 days left") << 85 * day << ValidityState::Healthy;
        QTest::newRow("a second less than 15 days left")
            << 85 * day + second << ValidityState::ExpiresSoon;
        QTest::newRow("14 days 23 hours left")
            << 85 * day + 3600 * second << ValidityState::ExpiresSoon;
        QTest::newRow("a second left") << 100 * day - second << ValidityState::ExpiresSoon;
        QTest::newRow("as it ends") << 100 * day << ValidityState::ExpiresSoon;
        QTest::newRow("a tick after it ended") << 100 * day + 1 << ValidityState::Expired;
        QTest::newRow("a second after it ended") << 100 * day + second << ValidityState::Expired;
    }

    void state_of_a_certificate()
    {
        QFETCH(const qint64, now);
        QFETCH(const ValidityState, state);
        QCOMPARE(certificateState(at(0), at(100 * day), at(now)), state);
        // A list with both dates is no different.
        QCOMPARE(revocationListState(at(0), at(100 * day), at(now)), state);
    }

    void certificate_that_ends_before_it_begins_is_never_healthy()
    {
        QCOMPARE(certificateState(at(day), at(0), at(-second)), ValidityState::NotYetValid);
        QCOMPARE(certificateState(at(day), at(0), at(second)), ValidityState::Expired);
        QCOMPARE(certificateState(at(day), at(0), at(2 * day)), ValidityState::Expired);
    }

    void list_without_a_next_update_expires_soon_once_it_is_valid()
    {
        const UaDateTime none;
        QCOMPARE(revocationListState(at(0), none, at(-second)), ValidityState::Expired);
        QCOMPARE(revocationListState(at(0), none, at(0)), ValidityState::ExpiresSoon);
        QCOMPARE(revocationListState(at(0), none, at(10000 * day)), ValidityState::ExpiresSoon);
    }
};

QTEST_MAIN(ValidityStateTest)

#include "validitystate_test.moc"
