#include "console/securitypolicies.h"
#include "console/vesksecuritydelegate.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSize = 16;
constexpr int step = iconSize + 3;
const QRect cell(10, 5, 120, iconSize + 4);

QString uri(const char* name)
{
    return SecurityPolicies::prefix + QLatin1StringView(name);
}

QStringList uris(std::initializer_list<const char*> names)
{
    QStringList list;
    for (const char* name : names) {
        list.append(uri(name));
    }
    return list;
}

QImage emptyImage()
{
    QImage image(140, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

/// What is expected: the background, then the images side by side; an empty name leaves a place.
QImage drawn(const QColor& background, std::initializer_list<const char*> images)
{
    QImage image = emptyImage();
    QPainter painter(&image);
    if (background.isValid()) {
        painter.fillRect(cell, background);
    }
    int left = cell.left();
    for (const char* name : images) {
        if (*name != '\0') {
            const QIcon icon(u":/veskwidgets/images/encr_%1.png"_s.arg(QLatin1StringView(name)));
            painter.drawPixmap(QRect(left, cell.top(), iconSize, iconSize),
                               icon.pixmap(iconSize, iconSize));
        }
        left += step;
    }
    return image;
}

QStyleOptionViewItem optionFor(QStyle::State state)
{
    QStyleOptionViewItem option;
    option.rect = cell;
    option.decorationSize = QSize(iconSize, iconSize);
    option.state = state;
    option.palette.setColor(QPalette::Active, QPalette::Highlight, Qt::blue);
    option.palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::gray);
    option.palette.setColor(QPalette::Disabled, QPalette::Highlight, Qt::red);
    return option;
}

QImage painted(const VeskSecurityDelegate& delegate, const QVariant& value,
               const QStyleOptionViewItem& option)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), value, Qt::DisplayRole);
    QImage image = emptyImage();
    QPainter painter(&image);
    delegate.paint(&painter, option, model.index(0, 0));
    return image;
}

QSize hint(const QVariant& value)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), value, Qt::DisplayRole);
    const VeskSecurityDelegate delegate(SecurityPolicies::known);
    return delegate.sizeHint(optionFor(QStyle::State_None), model.index(0, 0));
}

} // namespace

class VeskSecurityDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void icons_are_drawn_in_the_order_of_the_known_policies_data()
    {
        using Names = std::initializer_list<const char*>;
        QTest::addColumn<QStringList>("policies");
        QTest::addColumn<QImage>("expected");
        const auto row = [](const char* name, Names policies, Names images) {
            QTest::newRow(name) << uris(policies) << drawn(QColor(), images);
        };
        row("no policy", {}, {});
        row("none", {"None"}, {"none"});
        row("basic128rsa15", {"Basic128Rsa15"}, {"basic128rsa15"});
        row("basic256", {"Basic256"}, {"basic256"});
        row("basic256sha256", {"Basic256Sha256"}, {"basic256sha256"});
        row("all, backwards in the row", {"Basic256Sha256", "Basic256", "Basic128Rsa15", "None"},
            {"none", "basic128rsa15", "basic256", "basic256sha256"});
        row("unknown between others takes no place", {"None", "Aes128_Sha256_RsaOaep", "Basic256"},
            {"none", "basic256"});
        row("unknown alone", {"Unknown"}, {});
        row("the case of a URI counts", {"NONE", "Basic256"}, {"basic256"});
        row("twice in the row is drawn once", {"None", "None", "Basic256"}, {"none", "basic256"});
    }

    void icons_are_drawn_in_the_order_of_the_known_policies()
    {
        QFETCH(const QStringList, policies);
        QFETCH(const QImage, expected);
        const VeskSecurityDelegate delegate(SecurityPolicies::known);
        QCOMPARE(painted(delegate, policies, optionFor(QStyle::State_Enabled)), expected);
        // Once more from the icons that are kept.
        QCOMPARE(painted(delegate, policies, optionFor(QStyle::State_Enabled)), expected);
    }

    void the_four_images_differ()
    {
        const VeskSecurityDelegate delegate(SecurityPolicies::known);
        QList<QImage> images;
        for (const QString& policy : SecurityPolicies::known) {
            const QImage image =
                painted(delegate, QStringList(policy), optionFor(QStyle::State_Enabled));
            QVERIFY(image != emptyImage());
            QVERIFY(!images.contains(image));
            images.append(image);
        }
    }

    void the_order_is_the_constructors()
    {
        const VeskSecurityDelegate delegate(uris({"Basic256", "None"}));
        QCOMPARE(painted(delegate, uris({"None", "Basic256"}), optionFor(QStyle::State_None)),
                 drawn(QColor(), {"basic256", "none"}));
    }

    void policy_without_an_image_leaves_its_place_blank()
    {
        const VeskSecurityDelegate delegate(uris({"Missing", "None"}));
        QCOMPARE(painted(delegate, uris({"Missing", "None"}), optionFor(QStyle::State_None)),
                 drawn(QColor(), {"", "none"}));
    }

    void policy_shorter_than_the_prefix_draws_nothing()
    {
        const VeskSecurityDelegate delegate({u"urn:x"_s, QString()});
        QCOMPARE(
            painted(delegate, QStringList{u"urn:x"_s, QString()}, optionFor(QStyle::State_None)),
            emptyImage());
    }

    void selected_row_has_the_highlight_of_its_colour_group_data()
    {
        QTest::addColumn<QPalette::ColorGroup>("group");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("active") << QPalette::Active << QColor(Qt::blue);
        QTest::newRow("inactive") << QPalette::Inactive << QColor(Qt::gray);
        QTest::newRow("disabled") << QPalette::Disabled << QColor(Qt::red);
    }

    void selected_row_has_the_highlight_of_its_colour_group()
    {
        QFETCH(const QPalette::ColorGroup, group);
        QFETCH(const QColor, colour);
        const VeskSecurityDelegate delegate(SecurityPolicies::known);
        QStyleOptionViewItem option = optionFor(QStyle::State_Selected);
        option.palette.setCurrentColorGroup(group);
        QCOMPARE(painted(delegate, uris({"None", "Basic256"}), option),
                 drawn(colour, {"none", "basic256"}));
        QCOMPARE(painted(delegate, QStringList(), option), drawn(colour, {}));
    }

    void painter_is_given_back_as_it_was()
    {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), uris({"None"}), Qt::DisplayRole);
        QImage image = emptyImage();
        QPainter painter(&image);
        painter.setPen(Qt::red);
        const VeskSecurityDelegate delegate(SecurityPolicies::known);
        delegate.paint(&painter, optionFor(QStyle::State_Selected), model.index(0, 0));
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
        QCOMPARE(painter.pen().color(), QColor(Qt::red));
    }

    void value_that_is_no_list_draws_nothing()
    {
        const VeskSecurityDelegate delegate(SecurityPolicies::known);
        QCOMPARE(painted(delegate, QVariant(), optionFor(QStyle::State_None)), emptyImage());
        QCOMPARE(painted(delegate, 7, optionFor(QStyle::State_None)), emptyImage());
    }

    void size_hint_counts_the_bits_of_a_number_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("count");
        QTest::newRow("list of policies") << QVariant(SecurityPolicies::known) << 0;
        QTest::newRow("empty list") << QVariant(QStringList()) << 0;
        QTest::newRow("nothing") << QVariant() << 0;
        QTest::newRow("zero") << QVariant(0) << 0;
        QTest::newRow("one bit") << QVariant(4) << 1;
        QTest::newRow("two bits") << QVariant(5) << 2;
        QTest::newRow("all bits") << QVariant(0x7fffffff) << 31;
        QTest::newRow("negative") << QVariant(-1) << 0;
    }

    void size_hint_counts_the_bits_of_a_number()
    {
        QFETCH(const QVariant, value);
        QFETCH(const int, count);
        QCOMPARE(hint(value), QSize(count * step, iconSize));
    }
};

ZANDREL_TEST_MAIN(VeskSecurityDelegateTest)

#include "vesksecuritydelegate_test.moc"
