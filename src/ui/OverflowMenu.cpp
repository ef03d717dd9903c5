#include "ui/OverflowMenu.h"

namespace
{
enum MenuItem
{
    showItem = 1,
    uninstallItem,
    deleteItem,
    cancelItem
};
}

juce::PopupMenu overflowMenuFor (const ProductCardModel& model)
{
    const auto downloading = model.state == ProductCardState::downloading;
    juce::PopupMenu menu;

    menu.addItem (showItem, "Show in Explorer");
    menu.addItem (uninstallItem, "Uninstall (not available)", false);

    if (downloading)
        menu.addItem (cancelItem, "Cancel Download");

    menu.addSeparator();
    menu.addItem (deleteItem, "Delete from Vault", ! downloading && model.vaultFile.existsAsFile());
    return menu;
}

juce::String overflowActionFor (int menuResult)
{
    switch (menuResult)
    {
        case showItem:    return "reveal";
        case deleteItem:  return "delete-vault";
        case cancelItem:  return "cancel";
        default:          return {};
    }
}
