// Draws every view in every situation into PNG files, without a display: to look at, and to compare with.
//
//   gallery DIR [--home HOME] [--locale LOCALE]
//
// QT_SCALE_FACTOR sets the scale, which is part of the file names. With a home folder, the views show its figures; with
// a locale ("de", "de_AT"), they are in its language.

#include "Gallery/GalleryStates.h"
#include "Tallyfox/Agent/Popover/PopoverView.h"
#include "Tallyfox/Agent/Settings/SettingsView.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/Store/UsageStore.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLocale>
#include <QTabBar>
#include <QTextStream>

#include <algorithm>

namespace {

using namespace tallyfox;
using tallyfox::gallery::GalleryState;

/// The figures of real histories, with a quota as `codex` would report it.
GalleryState stateOfHome(const QString& home)
{
    StoreEnvironment environment = makeStoreEnvironment({}, home.toStdString());
    environment.fetchQuota = [now = environment.now](const std::stop_token&) {
        const auto states = gallery::galleryStates();
        const auto withQuota = std::find_if(states.begin(), states.end(), [](const GalleryState& state) {
            return state.name == QStringLiteral("quota");
        });
        QuotaSnapshot quota = *withQuota->usage.states.back().quota;
        const auto shift = now() - withQuota->usage.now;
        quota.primary.resetsAt = *quota.primary.resetsAt + shift;
        quota.secondary->resetsAt = *quota.secondary->resetsAt + shift;
        return std::variant<QuotaSnapshot, QuotaError>{quota};
    };
    UsageStore store{environment};
    QObject::connect(&store, &UsageStore::isRefreshingPublished, &store, [](bool isRefreshing) {
        if (!isRefreshing)
            QCoreApplication::quit();
    });
    store.refresh();
    QCoreApplication::exec();
    return {.name = QStringLiteral("home"), .usage = store.snapshot()};
}

bool save(QWidget& widget, const QDir& folder, const QString& name)
{
    const QString scale = QString::number(widget.devicePixelRatioF()).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString file = folder.filePath(name + QStringLiteral("@%1x.png").arg(scale));
    if (widget.grab().save(file))
        return true;
    QTextStream{stderr} << "gallery: cannot write " << file << '\n';
    return false;
}

bool drawPopover(const GalleryState& state, const QDir& folder)
{
    return std::all_of(allPopoverTabs.begin(), allPopoverTabs.end(), [&](PopoverTab tab) {
        PopoverView view{tab};
        view.setAttribute(Qt::WA_DontShowOnScreen);
        view.setUsage(state.usage);
        view.show();
        QCoreApplication::sendPostedEvents(); // lays out, as the event loop would
        const QString tabName = QString::fromLatin1(rawValue(tab)).toLower();
        return save(view, folder, QStringLiteral("popover-%1-%2").arg(tabName, state.name));
    });
}

/// The names are in the order of the tabs.
bool drawSettings(const GalleryState& state, const QDir& folder)
{
    SettingsView view{QStringLiteral("0.1.0")};
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.setPreferences({});
    view.setUsage(state.usage);
    view.show();
    auto* const tabs = view.findChild<QTabBar*>();
    int index = 0;
    for (const char* name : {"general", "accounts", "notifications", "about"}) {
        tabs->setCurrentIndex(index++);
        QCoreApplication::sendPostedEvents();
        if (!save(view, folder, QStringLiteral("settings-%1-%2").arg(QLatin1String{name}, state.name)))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application{argc, argv};
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("where to save the pictures"));
    const QCommandLineOption home{QStringLiteral("home"), QStringLiteral("show this folder's figures"),
                                  QStringLiteral("HOME")};
    const QCommandLineOption font{QStringLiteral("font"), QStringLiteral("font family"), QStringLiteral("FAMILY"),
                                  QStringLiteral("DejaVu Sans")};
    const QCommandLineOption locale{QStringLiteral("locale"), QStringLiteral("language and formats"),
                                    QStringLiteral("LOCALE"), QStringLiteral("en_US")};
    parser.addOptions({home, font, locale});
    parser.addHelpOption();
    parser.process(application);
    if (parser.positionalArguments().size() != 1 || !QDir{}.mkpath(parser.positionalArguments().constFirst()))
        parser.showHelp(2);
    QLocale::setDefault(QLocale{parser.value(locale)});
    installTranslations(application, QLocale{});
    QApplication::setFont(QFont{parser.value(font)});
    Theme::apply(application);

    const QDir folder{parser.positionalArguments().constFirst()};
    const auto states = parser.isSet(home) ? std::vector{stateOfHome(parser.value(home))} : gallery::galleryStates();
    const bool isDrawn = std::all_of(states.begin(), states.end(), [&](const GalleryState& state) {
        return drawPopover(state, folder) && drawSettings(state, folder);
    });
    return isDrawn ? 0 : 1;
}
