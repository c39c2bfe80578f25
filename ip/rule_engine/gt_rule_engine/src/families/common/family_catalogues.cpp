#include "families/common/family_catalogues.h"

#include "families/frozen/sxb_stable_catalogue.h"
#include "families/sxa/sxa_catalogue.h"
#include "families/sxb/sxb_catalogue.h"
#include "families/sxc/sxc_catalogue.h"
#include "families/sxd4/sxd4_catalogue.h"

namespace sable_lanecfg {

const std::vector<familyCatalogue>& familyCatalogues() {
    static const std::vector<familyCatalogue> catalogues{{"SXA", sxaCatalogue},
                                                         {"SXB", sxbCatalogue},
                                                         {"SXB-stable", sxbStableCatalogue},
                                                         {"SXC", sxcCatalogue},
                                                         {"SXD4", sxd4Catalogue}};
    return catalogues;
}

}  // namespace sable_lanecfg
