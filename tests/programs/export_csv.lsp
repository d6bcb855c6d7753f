;;; Writes number and position of all node blocks to a CSV file, nearest to the origin first.
(defun csv-field (s)
  (if (wcmatch s "*[,\"]*")
    (strcat "\"" (vl-list->string
                   (apply 'append (mapcar '(lambda (c) (if (= c 34) '(34 34) (list c)))
                                          (vl-string->list s)))) "\"")
    s))

(defun csv-line (fields / line)
  (setq line (csv-field (car fields)))
  (foreach f (cdr fields) (setq line (strcat line "," (csv-field f))))
  line)

(defun block-rows (pattern / ss n e d tags a rows)
  (setq ss (ssget "X" (list (cons 0 "INSERT") (cons 2 pattern))) n -1)
  (if ss
    (while (setq e (ssname ss (setq n (1+ n))))
      (setq d (entget e) tags nil)
      (if (= 1 (cdr (assoc 66 d)))
        (progn
          (setq a (entnext e))
          (while (= "ATTRIB" (cdr (assoc 0 (entget a))))
            (setq tags (cons (cons (cdr (assoc 2 (entget a))) (cdr (assoc 1 (entget a)))) tags)
                  a (entnext a)))))
      (setq rows (cons (list (cdr (assoc 5 d)) (cdr (assoc 2 d)) (cdr (assoc 10 d))
                             (cond ((cdr (assoc "NO" tags))) (""))) rows))))
  (vl-sort rows '(lambda (a b)
                   (< (distance '(0 0) (list (car (caddr a)) (cadr (caddr a))))
                      (distance '(0 0) (list (car (caddr b)) (cadr (caddr b))))))))

(defun C:CSVOUT (/ name f rows zin)
  (setq zin (getvar "DIMZIN"))
  (setvar "DIMZIN" 0)
  (setq rows (block-rows (getstring "\nBlock names <*>: ")))
  (cond
    ((null rows) (princ "\nNo block of that name."))
    ((null (setq name (getfiled "Table" "nodes" "csv" 1))) (princ "\nNo file."))
    ((null (setq f (open name "w"))) (princ (strcat "\nCannot write " name)))
    (T (write-line (csv-line '("handle" "block" "number" "x" "y")) f)
       (foreach r rows
         (write-line (csv-line (list (car r) (cadr r) (nth 3 r)
                                     (rtos (car (caddr r)) 2 2) (rtos (cadr (caddr r)) 2 2))) f))
       (close f)
       (princ (strcat "\n" (itoa (length rows)) " rows written to "
                      (vl-filename-base name) (vl-filename-extension name)))))
  (setvar "DIMZIN" zin)
  (princ))
