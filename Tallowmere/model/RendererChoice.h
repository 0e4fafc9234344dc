#pragma once

#include <QProcessEnvironment>
#include <QString>

// Which of Qt Quick's renderers draws the window. Without a GPU, OpenGL is Mesa's software
// rasteriser: it compiles every shader on first use and redraws the whole window for each frame
// of an animation, so opening the window takes about 300 ms and a running scan's spinner keeps
// both cores of a small machine busy. Qt Quick's own software renderer paints only what changed
// and opens the window in about 120 ms.
namespace tallowmere::RendererChoice {

// True when the software renderer should draw: nobody chose a renderer through the environment,
// and `renderNodeFolder` (where the kernel puts GPU render nodes) offers none this user can open.
bool prefersSoftware(const QProcessEnvironment& environment, const QString& renderNodeFolder);

// Makes that choice for this process; call before the first window is made.
void apply();

}  // namespace tallowmere::RendererChoice
