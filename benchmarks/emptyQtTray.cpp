/// The smallest program with an icon in the status area: the cost of any Qt Widgets program of that kind.

#include <QtWidgets/QApplication>
#include <QtWidgets/QSystemTrayIcon>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QPixmap square(24, 24);
    square.fill(Qt::gray);
    QSystemTrayIcon item{QIcon{square}};
    item.show();
    return QApplication::exec();
}
