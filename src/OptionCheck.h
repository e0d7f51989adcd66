#ifndef KYV_SRC_OPTIONCHECK_H
#define KYV_SRC_OPTIONCHECK_H

namespace KYV {

/// Looks through the values of all options before anything is drawn, and warns of every word that is not understood:
/// what it is, where it stands, what may be meant and what is used instead. Noted as Kyv::BADPARAM.
/// @param all  also of what else is told when it is used: with `strict` the run ends before that
void checkOptions(bool all);

/// Tells of a domain that was asked for and could not be set.
void explainDomain();

}  // namespace KYV
#endif
