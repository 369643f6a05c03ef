#include "desktop/Actions.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QAction>
#include <QtGui/QActionGroup>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolBar>
#include <array>

#include "desktop/Icons.h"
#include "marlune/qt/Units.h"

namespace marlune::desktop {
namespace {

QString actionText(const char* text) {
    return QCoreApplication::translate("Actions", text);
}

QAction* makeAction(QMainWindow& window, const char* text, const QKeySequence& key = {},
                    const char* icon = "") {
    auto* action = new QAction(actionText(text), &window);
    action->setShortcut(key);
    if (*icon != 0) {
        action->setIcon(iconNamed(icon, window.palette()));
    }
    if (!key.isEmpty()) {
        action->setToolTip(QStringLiteral("%1 (%2)").arg(actionText(text).remove(QLatin1Char('&')),
                                                         key.toString(QKeySequence::NativeText)));
    }
    return action;
}

QActionGroup* makeUnits(QMainWindow& window) {
    struct UnitsName {
        qt::Units units;
        const char* text;
    };
    constexpr std::array kNames = {
        UnitsName{qt::Units::metric, QT_TRANSLATE_NOOP("Actions", "&Kilometres, metres")},
        UnitsName{qt::Units::nautical, QT_TRANSLATE_NOOP("Actions", "&Nautical miles, metres")},
        UnitsName{qt::Units::imperial, QT_TRANSLATE_NOOP("Actions", "&Miles, feet")},
    };
    auto* group = new QActionGroup(&window);
    for (const UnitsName& each : kNames) {
        QAction* action = makeAction(window, each.text);
        action->setCheckable(true);
        action->setData(static_cast<int>(each.units));
        group->addAction(action);
    }
    return group;
}

}  // namespace

Actions::Actions(QMainWindow& window)
    : open(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Open …"), QKeySequence::Open, "open")),
      save(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Save as …"), QKeySequence::Save,
                      "save")),
      quit(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Quit"),
                      QKeySequence(Qt::CTRL | Qt::Key_Q))),
      refresh(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Look for receivers"),
                         QKeySequence::Refresh)),
      downloadAll(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Download everything"),
                             QKeySequence(Qt::CTRL | Qt::Key_D), "download")),
      downloadWaypoints(makeAction(window, QT_TRANSLATE_NOOP("Actions", "Download &waypoints"),
                                   QKeySequence(Qt::CTRL | Qt::Key_1))),
      downloadTracks(makeAction(window, QT_TRANSLATE_NOOP("Actions", "Download &tracks"),
                                QKeySequence(Qt::CTRL | Qt::Key_2))),
      downloadRoutes(makeAction(window, QT_TRANSLATE_NOOP("Actions", "Download &routes"),
                                QKeySequence(Qt::CTRL | Qt::Key_3))),
      send(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Send to the receiver …"),
                      QKeySequence(Qt::CTRL | Qt::Key_U), "send")),
      cancel(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Cancel"),
                        QKeySequence(Qt::Key_Escape))),
      fit(makeAction(window, QT_TRANSLATE_NOOP("Actions", "Show &everything on the map"),
                     QKeySequence(Qt::CTRL | Qt::Key_0))),
      tiles(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&Background map …"))),
      about(makeAction(window, QT_TRANSLATE_NOOP("Actions", "&About Marlune"))),
      aboutQt(makeAction(window, QT_TRANSLATE_NOOP("Actions", "About &Qt"))),
      units(makeUnits(window)),
      view(nullptr) {
    fillMenus(window);
    fillToolBar(window);
}

void Actions::fillMenus(QMainWindow& window) {
    QMenuBar& bar = *window.menuBar();
    QMenu* file = bar.addMenu(actionText(QT_TRANSLATE_NOOP("Actions", "&File")));
    file->addActions({open, save});
    file->addSeparator();
    file->addAction(quit);
    QMenu* receiver = bar.addMenu(actionText(QT_TRANSLATE_NOOP("Actions", "&Receiver")));
    receiver->addAction(refresh);
    receiver->addSeparator();
    receiver->addActions(downloads());
    receiver->addSeparator();
    receiver->addActions({send, cancel});
    view = bar.addMenu(actionText(QT_TRANSLATE_NOOP("Actions", "&View")));
    view->addAction(fit);
    view->addAction(tiles);
    view->addMenu(actionText(QT_TRANSLATE_NOOP("Actions", "&Units")))->addActions(units->actions());
    QMenu* help = bar.addMenu(actionText(QT_TRANSLATE_NOOP("Actions", "&Help")));
    help->addActions({about, aboutQt});
}

void Actions::fillToolBar(QMainWindow& window) const {
    QToolBar* bar = window.addToolBar(actionText(QT_TRANSLATE_NOOP("Actions", "Tools")));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions({downloadAll, send});
    bar->addSeparator();
    bar->addActions({open, save});
}

}  // namespace marlune::desktop
