// What the user can ask the window for: in its menus, on its toolbar and by keys.
#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

namespace marlune::desktop {

struct Actions {
    // The window's, in its menu bar and on its toolbar.
    explicit Actions(QMainWindow& window);

    QAction* open;
    QAction* save;
    QAction* quit;
    QAction* refresh;
    QAction* downloadAll;
    QAction* downloadWaypoints;
    QAction* downloadTracks;
    QAction* downloadRoutes;
    QAction* send;
    QAction* cancel;
    QAction* fit;
    QAction* tiles;
    QAction* about;
    QAction* aboutQt;
    QActionGroup* units;  // each with its qt::Units as its data
    QMenu* view;          // for the parts of the window that can be hidden

    [[nodiscard]] QList<QAction*> downloads() const {
        return {downloadAll, downloadWaypoints, downloadTracks, downloadRoutes};
    }

private:
    void fillMenus(QMainWindow& window);
    void fillToolBar(QMainWindow& window) const;
};

}  // namespace marlune::desktop
