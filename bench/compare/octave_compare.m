% The same kernels as tarn_compare on the systems it wrote into the current folder: one line per
% kernel and order with the seconds per call and the residual.
pkg load control
warning('off', 'all');
orders = [10 50 100 200];
T = 0.1;

function M = readm(stem, name)
  M = load('-ascii', [stem '_' name '.txt']);
end

function best = timeof(f)
  best = Inf; total = 0; k = 0;
  while k < 3 || (total < 0.5 && k < 200)
    t0 = tic; f(); t = toc(t0);
    best = min(best, t); total = total + t; k = k + 1;
  end
end

function r = lyapres(A, P, Q)
  r = norm(A*P + P*A' + Q, 'fro') / (2*norm(A, 'fro')*norm(P, 'fro') + norm(Q, 'fro'));
end

function r = steinres(A, P, Q)
  a = norm(A, 'fro');
  r = norm(A*P*A' - P + Q, 'fro') / (a*a*norm(P, 'fro') + norm(P, 'fro') + norm(Q, 'fro'));
end

function report(kernel, n, t, r)
  printf('%s %d %.6g %.3g\n', kernel, n, t, r); fflush(stdout);
end

function r = holdres(sys, T)
  [Ad, Bd] = ssdata(c2d(sys, T, 'zoh')); [Ah, Bh] = ssdata(c2d(sys, T/2, 'zoh'));
  r = (norm(Ad - Ah*Ah, 'fro') + norm(Bd - Ah*Bh - Bh, 'fro')) / (norm(Ad, 'fro') + norm(Bd, 'fro'));
end

function r = placeres(Acl, desired)
  reached = eig(Acl); worst = 0;
  for k = 1:numel(desired)
    worst = max(worst, min(abs(reached - desired(k))) / max(1, abs(desired(k))));
  end
  r = worst;
end

function r = peakres(sys, value, w)
  r = abs(value - max(sigma(sys, w))) / value;
end

for n = orders
  stem = sprintf('c%d', n);
  A = readm(stem, 'A'); B = readm(stem, 'B'); C = readm(stem, 'C'); D = readm(stem, 'D');
  sys = ss(A, B, C, D);
  P = []; Q = []; h2 = 0; K = []; sb = []; g = [];
  report('lyap', n, timeof(@() lyap(A, B*B')), lyapres(A, lyap(A, B*B'), B*B'));
  report('gram', n, timeof(@() gram(sys, 'o')), lyapres(A', gram(sys, 'o'), C'*C));
  h2 = norm(sys, 2); P = lyap(A, B*B');
  report('h2', n, timeof(@() norm(sys, 2)), abs(h2 - sqrt(trace(C*P*C'))) / h2);
  report('c2d', n, timeof(@() c2d(sys, T, 'zoh')), holdres(sys, T));
  % Balanced truncation by the square-root method to the full order, which keeps the minimal part:
  % the balanced realisation.
  [sb, info] = btamodred(sys, n, 'method', 'sr', 'equil', false); g = info.hsv(1:size(sb.a, 1));
  report('balreal', n, timeof(@() btamodred(sys, n, 'method', 'sr', 'equil', false)), ...
         max(norm(gram(sb, 'c') - diag(g), 'fro'), norm(gram(sb, 'o') - diag(g), 'fro')) / norm(g));
  desired = eig(A) - 0.5;
  K = place(A, B, desired);
  report('place', n, timeof(@() place(A, B, desired)), placeres(A - B*K, desired));
  [value, w] = norm(sys, inf);
  report('hinf', n, timeof(@() norm(sys, inf)), peakres(sys, value, w));

  stem = sprintf('d%d', n);
  A = readm(stem, 'A'); B = readm(stem, 'B'); C = readm(stem, 'C'); D = readm(stem, 'D');
  sys = ss(A, B, C, D, T);
  P = dlyap(A, B*B');
  report('dlyap', n, timeof(@() dlyap(A, B*B')), steinres(A, P, B*B'));
  h2 = norm(sys, 2);
  report('dh2', n, timeof(@() norm(sys, 2)), abs(h2 - sqrt(trace(C*P*C'))) / h2);
  [value, w] = norm(sys, inf);
  report('dhinf', n, timeof(@() norm(sys, inf)), peakres(sys, value, w));
end
