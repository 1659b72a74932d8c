#include "CMiscPage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

QString word(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

CMiscPage::CMiscPage(QWidget* parent)
    : COptionsPage(OptionPageKind::Misc, QStringLiteral("options-misc"), parent)
{
    auto* grid = new QGridLayout(this);
    grid->addWidget(choiceGroup(tr("Split Screens"), { tr("&Horizontally"), tr("&Vertically") },
                        { word(config::kSplitHorizontal), word(config::kSplitVertical) },
                        config::kScreenSplit.name),
        0, 0);
    grid->addWidget(choiceGroup(tr("Local Drag && Drop"), { tr("&Move"), tr("&Copy") },
                        { QStringLiteral("MOVE"), QStringLiteral("COPY") }, config::kDragDrop.name),
        0, 1);
    grid->addWidget(
        choiceGroup(tr("FTP Folders"), { tr("&No Path"), tr("&Last Directory"), tr("&Full Path") },
            { word(config::kDirTreeNoPath), word(config::kDirTreeLastDir),
                word(config::kDirTreeFullPath) },
            config::kFtpDirTreeMiscPage.name),
        1, 0);
    grid->addWidget(choiceGroup(tr("Local File Double Click Action"),
                        { tr("&Upload"), tr("E&xecute"), tr("&Open"), tr("No &Action") },
                        { QStringLiteral("TRANSFER"), QStringLiteral("EXECUTE"),
                            QStringLiteral("OPEN"), QStringLiteral("NO_ACTION") },
                        config::kLocalDblClick.name, 3),
        1, 1);
    grid->addWidget(
        choiceGroup(tr("Remote File Double Click Action"), { tr("&Download"), tr("No Ac&tion") },
            { QStringLiteral("TRANSFER"), QStringLiteral("NO_ACTION") },
            config::kRemoteDblClick.name, 1),
        2, 0);

    auto* recursive = new QCheckBox(tr("Drag && Drop Directories &Recursively"));
    bindCheck(recursive, config::kDragDropDirsMiscPage.name);
    grid->addWidget(recursive, 2, 1);

    auto* remove = new QGroupBox(tr("Delete File"));
    auto* removeLayout = new QVBoxLayout(remove);
    auto* afterPut = new QCheckBox(tr("On Local host after &PUT"));
    auto* afterGet = new QCheckBox(tr("On Remote host after &GET"));
    removeLayout->addWidget(afterPut);
    removeLayout->addWidget(afterGet);
    bindCheck(afterPut, config::kDeletePut.name);
    bindCheck(afterGet, config::kDeleteGet.name);
    grid->addWidget(remove, 3, 0);

    auto* rename = new QGroupBox(tr("Rename long file names"));
    auto* renameLayout = new QVBoxLayout(rename);
    auto* yes = new QCheckBox(tr("&Yes"));
    renameLayout->addWidget(yes);
    bindCheck(yes, config::kRenameLongFileNames.name);
    grid->addWidget(rename, 3, 1);
    grid->setRowStretch(4, 1);
}

QGroupBox* CMiscPage::choiceGroup(const QString& title, const QStringList& texts,
    const QStringList& words, const char* key, int otherwise)
{
    auto* group = new QGroupBox(title);
    auto* layout = new QVBoxLayout(group);
    std::vector<QRadioButton*> buttons;
    for (const QString& text : texts) {
        buttons.push_back(new QRadioButton(text));
        layout->addWidget(buttons.back());
    }
    bindChoice(buttons, words, key, otherwise);
    return group;
}

} // namespace zelto
