# The version of the product, for project(). The interface has its own, in server/Kal_COGCheck.idl.
set(KAL_VERSION 5.5.17)
