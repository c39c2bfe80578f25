#include "families/sxb/sxb_catalogue.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"

namespace sable_lanecfg {

const register_catalogue& sxbCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue all = sxbRxCatalogue();
        all.append(sxbTxCatalogue());
        all.append(sxbPllCatalogue());
        return all;
    }();
    return catalogue;
}

}  // namespace sable_lanecfg
