#include <QtCore/QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return 0;
}
