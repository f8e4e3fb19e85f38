#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QtEndian>

#include <utility>

namespace tallyfox {

namespace {

QString path()
{
    return QStringLiteral("/StatusNotifierItem");
}

StatusNotifierPixmaps pixmaps(const QString& number)
{
    StatusNotifierPixmaps result;
    for (const int side : StatusIconPainter::sides)
        result.append(statusNotifierPixmap(StatusIconPainter::image(number, side)));
    return result;
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

} // namespace

/// The interface of a status notifier item, its members named as they are on the bus. Properties without meaning here
/// are present all the same: panels ask for them, and some log every one that is missing.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category MEMBER m_category CONSTANT)
    Q_PROPERTY(QString Id MEMBER m_id CONSTANT)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status MEMBER m_status CONSTANT)
    Q_PROPERTY(int WindowId MEMBER m_windowId CONSTANT)
    Q_PROPERTY(QString IconThemePath MEMBER m_noName CONSTANT)
    Q_PROPERTY(QString IconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ title)
    Q_PROPERTY(QString OverlayIconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps OverlayIconPixmap MEMBER m_noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps AttentionIconPixmap MEMBER m_noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName MEMBER m_noName CONSTANT)
    Q_PROPERTY(QString AttentionAccessibleDesc MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu MEMBER m_itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu MEMBER m_menu CONSTANT)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide MEMBER m_labelGuide CONSTANT)
    Q_PROPERTY(uint XAyatanaOrderingIndex MEMBER m_orderingIndex CONSTANT)

public:
    StatusNotifierItemAdaptor(const QString& id, StatusNotifierItem& item)
        : QDBusAbstractAdaptor{&item}
        , m_item{item}
        , m_id{id}
    { }

    [[nodiscard]] QString title() const
    {
        return m_item.content().fullText();
    }
    [[nodiscard]] StatusNotifierPixmaps iconPixmap() const
    {
        Q_EMIT m_item.pictureRead();
        return m_item.icon();
    }
    [[nodiscard]] StatusNotifierToolTip toolTip() const
    {
        return {{}, {}, title(), {}};
    }
    [[nodiscard]] QString label() const
    {
        return m_item.content().shortText();
    }
    [[nodiscard]] QString labelGuide() const
    {
        return m_labelGuide;
    }

public Q_SLOTS:
    // Some panels send only one of these, so every button means the same.
    void Activate(int x, int y)
    {
        Q_EMIT m_item.activated({x, y});
    }
    void SecondaryActivate(int x, int y)
    {
        Q_EMIT m_item.activated({x, y});
    }
    void ContextMenu(int x, int y)
    {
        Q_EMIT m_item.activated({x, y});
    }
    void Scroll(int /*delta*/, const QString& /*orientation*/) { }
    void ProvideXdgActivationToken(const QString& token)
    {
        Q_EMIT m_item.activationTokenProvided(token.toUtf8());
    }

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void XAyatanaNewLabel(const QString& label, const QString& guide);

private:
    StatusNotifierItem& m_item;
    QString m_category = QStringLiteral("ApplicationStatus");
    QString m_id;
    QString m_status = QStringLiteral("Active");
    int m_windowId = 0;
    QString m_noName; // with a name, most panels ignore the pixmap, and with it the number
    StatusNotifierPixmaps m_noPixmap;
    bool m_itemIsMenu = false; // else panels would open the menu on every button
    QDBusObjectPath m_menu{StatusMenu::path()};
    QString m_labelGuide = QStringLiteral(" 100%");
    uint m_orderingIndex = 0;
};

StatusNotifierItem::StatusNotifierItem(const QString& id, const QDBusConnection& bus, QObject* parent)
    : QObject{parent}
    , m_bus{bus}
    , m_icon{pixmaps({})}
    , m_adaptor{new StatusNotifierItemAdaptor{id, *this}}
{
    registerStatusNotifierTypes();
    m_bus.registerObject(path(), this, QDBusConnection::ExportAdaptors);
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_bus.unregisterObject(path());
}

void StatusNotifierItem::setContent(const StatusItemContent& content)
{
    const StatusItemContent previous = std::exchange(m_content, content);
    if (content == previous)
        return;
    Q_EMIT m_adaptor->NewTitle();
    Q_EMIT m_adaptor->NewToolTip();
    Q_EMIT m_adaptor->XAyatanaNewLabel(m_adaptor->label(), m_adaptor->labelGuide());
    updatePicture();
    // For peers that cache properties. Pictures are left to NewIcon: panels fetch them once for all sizes.
    const QVariantMap changed{{QStringLiteral("Title"), m_adaptor->title()},
                              {QStringLiteral("IconAccessibleDesc"), m_adaptor->title()},
                              {QStringLiteral("ToolTip"), QVariant::fromValue(m_adaptor->toolTip())},
                              {QStringLiteral("XAyatanaLabel"), m_adaptor->label()}};
    QDBusMessage signal = QDBusMessage::createSignal(path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    m_bus.send(signal << QStringLiteral("org.kde.StatusNotifierItem") << changed << QStringList{});
}

void StatusNotifierItem::setLabelShown(bool isShown)
{
    m_isLabelShown = isShown;
    updatePicture();
}

/// Painted into the picture; empty for the symbol.
QString StatusNotifierItem::number() const
{
    return m_isLabelShown ? QString{} : StatusIconPainter::number(m_content.percent);
}

void StatusNotifierItem::updatePicture()
{
    if (number() == m_shownNumber)
        return;
    m_shownNumber = number();
    m_icon = pixmaps(m_shownNumber);
    Q_EMIT m_adaptor->NewIcon();
}

StatusNotifierPixmap statusNotifierPixmap(const QImage& image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    const qsizetype rowBytes = qsizetype{argb.width()} * 4;
    QByteArray bytes{rowBytes * argb.height(), Qt::Uninitialized};
    for (int row = 0; row < argb.height(); ++row)
        qToBigEndian<quint32>(argb.constScanLine(row), argb.width(), bytes.data() + row * rowBytes);
    return {argb.width(), argb.height(), bytes};
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

} // namespace tallyfox

#include "StatusNotifierItem.moc"
