#pragma once

class QTreeView;

namespace zelto {

// The look and behaviour every list of rows shares (sites, files): whole rows selected, several
// at a time, striped, never edited in place.
void setUpReportList(QTreeView& view);

} // namespace zelto
