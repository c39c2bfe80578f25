#include "families/sxd4/sxd4_catalogue.h"

#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rx_catalogue.h"
#include "families/sxd4/sxd4_tx_catalogue.h"

namespace sable_lanecfg {

const register_catalogue& sxd4Catalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue all = sxd4RxCatalogue();
        all.append(sxd4TxCatalogue());
        all.append(sxd4PllCatalogue());
        return all;
    }();
    return catalogue;
}

}  // namespace sable_lanecfg
