#include "direct/DirectSolver.h"

#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <cstdlib>
#include <cstdio>
#include <chrono>

#include "algebra/ReaVecT.h"
#include "main/ErrorChannel.h"

namespace kestol {

static int E(const char*n,int d){const char*s=getenv(n);return s?atoi(s):d;}
static double ED(const char*n,double d){const char*s=getenv(n);return s?atof(s):d;}
class DirectSolver::Mumps {
public:
  DMUMPS_STRUC_C s{};
  std::vector<int> irn, jcn;
};
DirectSolver::DirectSolver(int n) : NodeBlockMatrix(n) {}
DirectSolver::~DirectSolver() { if (mumps_) { mumps_->s.job=-2; dmumps_c(&mumps_->s);} }
void DirectSolver::Allocate(int d) { NodeBlockMatrix::Allocate(d); }
void DirectSolver::SetZero() { NodeBlockMatrix::SetZero(); }
static double Now(){return (double)clock()/CLOCKS_PER_SEC;}
int DirectSolver::Factorise(std::ostream*) {
  double t0=Now();
  mumps_ = std::make_unique<Mumps>();
  auto& s = mumps_->s;
  s.job=-1; s.par=1; s.sym=E("SYM",2); s.comm_fortran=-987654;
  dmumps_c(&s);
  int v=E("VERB",0);
  for(int i=0;i<3;i++) s.icntl[i]= v? 6:-1;
  s.icntl[3]=v;
  int B=BlockSize();
  int zero=E("ZERO",1);
  auto& rows=Rows();
  std::vector<double> vals;
  const double*a=Values().data();
  for(int I=0;I+1<(int)rows.start.size();++I) for(int b=rows.start[I];b<rows.start[I+1];++b){
    int J=rows.column[b];
    for(int r=0;r<B;r++)for(int c=0;c<B;c++){ double x=a[(size_t)b*B*B+r*B+c]; if(zero==2&&x==0.0) continue; if(zero==0&&I==J&&c<r) continue;
      if (zero!=1) vals.push_back(x);
      mumps_->irn.push_back(I*B+r+1);mumps_->jcn.push_back(J*B+c+1);} }
  s.n=NumDegrees(); s.nnz=(long)mumps_->irn.size(); s.irn=mumps_->irn.data(); s.jcn=mumps_->jcn.data(); s.a=zero!=1?vals.data():const_cast<double*>(a);
  s.icntl[5]=E("I6",0); s.icntl[6]=E("ORD",7); s.icntl[7]=E("SCAL",77); s.icntl[11]=E("I12",1); s.icntl[12]=1; s.icntl[13]=E("I14",20);
  s.icntl[14]=E("BLK",0)?-B:0;
  s.icntl[23]=E("NULLP",0); s.cntl[2]=ED("C3",0.0); s.cntl[0]=ED("C1",s.cntl[0]);s.cntl[3]=ED("C4",s.cntl[3]);
  if (E("I57",-1)>=0) s.icntl[57]=E("I57",1);
  double t1=Now();
  s.job=1; dmumps_c(&s);
  double t2=Now();
  fprintf(stderr,"analysis info %d %d ord used %d  flops %.3g nnzL %lld est MB %d\n",s.infog[0],s.infog[1],s.infog[6],s.rinfog[0],(long long)(s.infog[19]<0?-1000000LL*s.infog[19]:s.infog[19]),s.infog[15]);
  s.job=2; dmumps_c(&s);
  double t3=Now();
  fprintf(stderr,"fact info %d %d neg %d null %d two %d  flops %.3g MB %d delayed %d\n",s.infog[0],s.infog[1],s.infog[11],s.infog[27],s.infog[12+1],s.rinfog[2],s.infog[20],s.infog[12]);
  fprintf(stderr,"TIMES prep %.3f analysis %.3f factor %.3f\n",t1-t0,t2-t1,t3-t2);
  return 0;
}
int DirectSolver::Substitute(ReaVecT& f, std::ostream*) {
  double t0=Now();
  auto& s=mumps_->s;
  s.nrhs=1; s.lrhs=s.n; s.rhs=f.begin(); s.icntl[9]=E("REF",0);
  s.job=3; dmumps_c(&s);
  fprintf(stderr,"subst %.3f info %d\n",Now()-t0,s.infog[0]);
  return 0;
}
std::vector<int> DirectSolver::NullPivots() const { return {}; }
}  // namespace kestol
