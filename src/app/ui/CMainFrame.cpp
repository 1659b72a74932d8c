#include "CMainFrame.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QIcon>

namespace zelto {

CMainFrame::CMainFrame(QWidget* parent) : QMainWindow(parent)
{
    setWindowTitle(StringTable::text(ids::kAppTitle));
    setWindowIcon(QIcon(QStringLiteral(":/zelto.svg")));
    resize(800, 600);
}

} // namespace zelto
