// What the shared library offers.
#pragma once

#include <QtCore/QtGlobal>

#if defined(MARLUNE_QT_STATIC)
#define MARLUNE_QT_EXPORT
#elif defined(marlune_qt_EXPORTS)
#define MARLUNE_QT_EXPORT Q_DECL_EXPORT
#else
#define MARLUNE_QT_EXPORT Q_DECL_IMPORT
#endif
