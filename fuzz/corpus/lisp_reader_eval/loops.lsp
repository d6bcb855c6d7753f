(setq i 0) (while (< i 10) (setq i (1+ i))) (repeat 3 (setq l (cons i l))) (cond ((= i 10) 'ten) (T nil))
(defun fib (n) (if (< n 2) n (+ (fib (- n 1)) (fib (- n 2))))) (fib 7) (while T (setq s (strcat "ab" "cd")))
